#pragma once

#include <QSize>

/// What is read at most. Every plug-in asks before it takes memory for pixels.
namespace ImageLimits {

inline constexpr int maximumSide = 16384;            ///< pixels
inline constexpr qint64 maximumPixels = 134'217'728; ///< 512 MiB at four bytes a pixel

/// Whether an image of that size (pixels) may be read. An empty size may.
inline bool accept(qint64 width, qint64 height) {
    return width <= maximumSide && height <= maximumSide && width * height <= maximumPixels;
}

inline bool accept(const QSize& size) { return accept(size.width(), size.height()); }

} // namespace ImageLimits
