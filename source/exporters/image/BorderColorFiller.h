#pragma once

#include "PixelReduction.h"

#include <QImage>

#include <vector>

/// One run of fillBorderColors(): a breadth-first flood from the pixels of any alpha over the transparent
/// ones.
class BorderColorFiller {
public:
    BorderColorFiller(const QImage& image, PixelFormatCode format);

    /// Works through the flood and gives the image away.
    QImage run();

private:
    /// The 3 x 3 block around a pixel, cut at the image's edges. Inclusive.
    struct Block {
        int left, top, right, bottom;
    };

    enum Flag : quint8 {
        Colored = 1, ///< has a valid colour
        Queued = 2,  ///< was put into the queue, or has never to be
        Seed = 4,    ///< starts the flood
    };

    Block blockAround(int x, int y) const;
    size_t indexOf(int x, int y) const { return static_cast<size_t>(y) * m_width + x; }
    bool isVisible(int x, int y) const { return qAlpha(m_rows[y][x]) != 0; }
    void markVisible();
    void markSeeds();
    void enqueueSeeds();
    void fill(size_t index, const ChannelTables& tables);
    QRgb meanColor(const Block& block) const;
    void enqueue(size_t index);

    QImage m_image;
    const int m_width;
    const int m_height;
    const PixelFormatCode m_format;
    std::vector<QRgb*> m_rows;
    std::vector<quint8> m_flags; ///< by pixel
    std::vector<quint32>
        m_queue; ///< indices y * width + x; each enters at most once, so there is room for all
    size_t m_readIndex = 0;
    size_t m_writeIndex = 0;
};

/// Gives transparent pixels the mean colour of what lies next to them, from the visible pixels outwards,
/// reduced to what `format` can hold, so that interpolation at a sprite's edge doesn't draw in black. Their
/// alpha stays 0, but for the formats without alpha, which make it 255. ARGB32 in and out. An image without a
/// visible pixel stays as it is. Throws Error: PixelFormat if there is a pixel to colour in a format without
/// reduction, OutOfMemory.
QImage fillBorderColors(const QImage& image, PixelFormatCode format);
