#pragma once

#include "PixelReduction.h"

#include <QImage>

#include <memory>
#include <vector>

/// One run of fillBorderColors(): a breadth-first flood from the pixels of any alpha over the transparent
/// ones. Pixels stand column by column, as the flood goes, with one more pixel around the image that never
/// takes part.
class BorderColorFiller {
public:
    BorderColorFiller(const QImage& image, PixelFormatCode format);

    /// Works through the flood and gives the result.
    QImage run();

private:
    enum Flag : quint8 {
        Colored = 1, ///< has a valid colour
        Queued = 2,  ///< was queued, or has never to be
    };

    size_t placeOf(int x, int y) const {
        return static_cast<size_t>(x + 1) * m_stride + static_cast<size_t>(y + 1);
    }
    bool isVisible(int x, int y) const { return qAlpha(m_pixels[placeOf(x, y)]) != 0; }
    bool isSeed(int x, int y) const;
    void enqueueSeeds();
    QRgb meanColor(size_t place) const;
    void enqueueAround(size_t place);
    QImage result() const;

    const int m_width;
    const int m_height;
    const size_t m_stride; ///< from one column to the next
    const PixelFormatCode m_format;
    std::vector<QRgb> m_pixels;
    std::vector<quint8> m_flags; ///< by place, of Flag
    /// Places in the order in which they are filled. Each enters once, so that there is room for all; memory
    /// that isn't reached isn't touched.
    std::unique_ptr<quint32[]> m_queue;
    size_t m_queueEnd = 0;
};

/// Gives transparent pixels the mean colour of what lies next to them, from the visible pixels outwards,
/// reduced to what `format` can hold, so that interpolation at a sprite's edge doesn't draw in black. Their
/// alpha stays 0, but for the formats without alpha, which make it 255. ARGB32 in and out, the resolution
/// stays. An image without a visible pixel stays as it is. Throws Error: PixelFormat if there is a pixel to
/// colour in a format without reduction, OutOfMemory.
QImage fillBorderColors(const QImage& image, PixelFormatCode format);
