#pragma once

#include <QImage>

#include <random>

/// What a sprite is like: a shape of few colours with soft edges, about `margin` transparent pixels around
/// it.
inline QImage spriteLikeImage(int side, int margin) {
    std::mt19937 random(side);
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(0U);
    for (int y = margin; y < side - margin; ++y)
        for (int x = margin; x < side - margin; ++x) {
            const uint shade = (static_cast<uint>(x) / 8 + static_cast<uint>(y) / 8) % 5 * 40 + random() % 4;
            const bool soft = x == margin || y == margin || x == side - margin - 1 || y == side - margin - 1;
            image.setPixel(x, y, qRgba(shade, 255 - shade, shade / 2, soft ? 128 : 255));
        }
    return image;
}
