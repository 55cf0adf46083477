#include "PackedTexture.h"

#include "SaturatedMath.h"

#include <QDebug>

struct PackedTexture::Data : QSharedData {
    int width = -1;
    int height = -1;
    int borderPadding = 0;
    int shapePadding = 0;
    QList<PackedSprite> allSprites;
    QList<PackedSprite> sprites;
    QHash<int, PackedSprite> spritesById;

    void enter(const PackedSprite& sprite);
};

void PackedTexture::Data::enter(const PackedSprite& sprite) {
    if (sprite.fullName().isEmpty())
        qWarning("Adding empty sprite name to PackedTexture");
    allSprites.append(sprite);
    spritesById.insert(sprite.id(), sprite);
}

PackedTexture::PackedTexture() : m_data(new Data) {}

PackedTexture::PackedTexture(int borderPadding, int shapePadding) : m_data(new Data) {
    m_data->borderPadding = borderPadding;
    m_data->shapePadding = shapePadding;
}

PackedTexture::PackedTexture(const PackedTexture& other) = default;
PackedTexture::PackedTexture(PackedTexture&& other) noexcept = default;
PackedTexture& PackedTexture::operator=(const PackedTexture& other) = default;
PackedTexture& PackedTexture::operator=(PackedTexture&& other) noexcept = default;
PackedTexture::~PackedTexture() = default;

PackedTexture PackedTexture::clone() const {
    PackedTexture copy(borderPadding(), shapePadding());
    copy.setSize(size());
    for (const PackedSprite& sprite : sprites())
        copy.add(sprite.clone());
    return copy;
}

int PackedTexture::width() const { return m_data->width; }
int PackedTexture::height() const { return m_data->height; }
QSize PackedTexture::size() const { return {m_data->width, m_data->height}; }

void PackedTexture::setSize(QSize size) {
    m_data->width = size.width();
    m_data->height = size.height();
}

int PackedTexture::borderPadding() const { return m_data->borderPadding; }
int PackedTexture::shapePadding() const { return m_data->shapePadding; }

void PackedTexture::add(const PackedSprite& sprite) {
    m_data->enter(sprite);
    m_data->sprites.append(sprite);
    for (const PackedSprite& alias : sprite.aliasList())
        m_data->enter(alias);
}

void PackedTexture::clear() {
    m_data->allSprites.clear();
    m_data->sprites.clear();
    m_data->spritesById.clear();
}

const QList<PackedSprite>& PackedTexture::allSprites() const { return m_data->allSprites; }
const QList<PackedSprite>& PackedTexture::sprites() const { return m_data->sprites; }
const QHash<int, PackedSprite>& PackedTexture::spritesById() const { return m_data->spritesById; }

qint64 PackedTexture::area() const { return qint64{width()} * height(); }

qint64 PackedTexture::freeArea() const {
    const qint64 margin = qint64{shapePadding()} - 2 * qint64{borderPadding()};
    qint64 free = saturated::multiply(height() + margin, width() + margin);
    for (const PackedSprite& sprite : sprites()) {
        const QSize padded = sprite.paddedSize();
        free = saturated::add(free, -qint64{padded.width()} * padded.height());
    }
    return free;
}
