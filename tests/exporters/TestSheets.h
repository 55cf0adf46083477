#pragma once

#include "PackedTexture.h"
#include "TestPictures.h"

/// A sprite with pixels at a place of the sheet.
inline PackedSprite placedSprite(const QImage& image, QPoint position, bool rotated = false,
                                 int direction = 0) {
    static int id = 0;
    PackedSprite sprite(QStringLiteral("sprite%1.png").arg(id), id);
    ++id;
    sprite.setCachedImage(GCachedImage(image));
    sprite.setSize(image.size());
    sprite.setPosition(position);
    sprite.setRotated(rotated);
    sprite.setRotationDirection(direction);
    return sprite;
}

inline PackedTexture sheet(QSize size, const QList<PackedSprite>& sprites = {}) {
    PackedTexture texture(0, 0);
    texture.setSize(size);
    for (const PackedSprite& sprite : sprites)
        texture.add(sprite);
    return texture;
}
