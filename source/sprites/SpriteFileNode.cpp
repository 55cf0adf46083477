#include "SpriteFileNode.h"

#include "ImageLoader.h"
#include "SpriteTreeVisitor.h"

#include <new>

void SpriteFileNode::accept(SpriteTreeVisitor& visitor) { visitor.visitFile(*this); }

void SpriteFileNode::load() {
    if (needsReading())
        take(read(fileName()));
}

bool SpriteFileNode::needsReading() {
    m_unread |= fileData().checkChanged();
    if (!m_unread)
        setChanged(false);
    return m_unread;
}

QImage SpriteFileNode::read(const QString& path) {
    try {
        return normalized(QtUniversalImageLoader::ImageLoader::instance()->load(path));
    } catch (const std::bad_alloc&) {
        return QImage();
    }
}

void SpriteFileNode::take(const QImage& image) {
    if (image.isNull())
        setError(ErrorClass::LoadFailure, QStringLiteral("Failed to load image: %1").arg(fileName()));
    else
        clearError(ErrorClass::LoadFailure);
    setNormalizedImage(image);
    setSeen(true);
    m_unread = false;
}
