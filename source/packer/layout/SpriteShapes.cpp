#include "SpriteShapes.h"

#include "AttemptKey.h"
#include "SaturatedMath.h"
#include "Sprite.h"

SpriteShapes::SpriteShapes(const QList<Sprite>& sprites) {
    m_shapes.reserve(static_cast<size_t>(sprites.size()));
    for (const Sprite& sprite : sprites) {
        const QSize padded = sprite.paddedSize();
        m_shapes.push_back({sprite.name(), padded.width(), padded.height()});
        m_area = saturated::add(m_area, qint64{padded.width()} * padded.height());
        m_hash = AttemptKey::mix(m_hash, static_cast<quint32>(padded.width()));
        m_hash = AttemptKey::mix(m_hash, static_cast<quint32>(padded.height()));
        m_hash = AttemptKey::mix(m_hash, qHash(sprite.name()));
    }
}
