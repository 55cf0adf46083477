#include "BorderColorFiller.h"

#include "NewImage.h"

#include <algorithm>
#include <limits>
#include <new>

BorderColorFiller::BorderColorFiller(const QImage& image, PixelFormatCode format)
    : m_image(image.copy()), m_width(image.width()), m_height(image.height()), m_format(format) {
    if (m_image.isNull())
        throwOutOfMemory();
    const size_t pixels = static_cast<size_t>(m_width) * static_cast<size_t>(m_height);
    if (pixels > std::numeric_limits<quint32>::max())
        throwOutOfMemory();
    m_flags.resize(pixels);
    m_queue.resize(pixels);
    m_rows.reserve(static_cast<size_t>(m_height));
    for (int y = 0; y < m_height; ++y)
        m_rows.push_back(reinterpret_cast<QRgb*>(m_image.scanLine(y)));
}

QImage BorderColorFiller::run() {
    markVisible();
    markSeeds();
    enqueueSeeds();
    if (m_writeIndex == 0)
        return m_image;
    const ChannelTables tables = channelTables(m_format, ReductionRule::Nearest);
    // The generations of the flood follow each other in the queue: what one writes, the next reads.
    while (m_readIndex != m_writeIndex)
        fill(m_queue[m_readIndex++], tables);
    return m_image;
}

BorderColorFiller::Block BorderColorFiller::blockAround(int x, int y) const {
    return {std::max(x - 1, 0), std::max(y - 1, 0), std::min(x + 1, m_width - 1),
            std::min(y + 1, m_height - 1)};
}

void BorderColorFiller::markVisible() {
    size_t index = 0;
    for (int y = 0; y < m_height; ++y)
        for (int x = 0; x < m_width; ++x, ++index)
            m_flags[index] = isVisible(x, y) ? Colored | Queued : 0;
}

/// The flood starts with pixels that touch a visible one at a corner of their block. Those that touch one
/// along a side only come a generation later: that is meant, and shows in the colours.
void BorderColorFiller::markSeeds() {
    size_t index = 0;
    for (int y = 0; y < m_height; ++y) {
        for (int x = 0; x < m_width; ++x, ++index) {
            if (m_flags[index] != 0)
                continue;
            const Block block = blockAround(x, y);
            if (isVisible(block.left, block.top) || isVisible(block.left, block.bottom) ||
                isVisible(block.right, block.top) || isVisible(block.right, block.bottom))
                m_flags[index] = Seed;
        }
    }
}

/// Column by column: the order decides which pixels are coloured first, and so what the others see.
void BorderColorFiller::enqueueSeeds() {
    for (int x = 0; x < m_width; ++x)
        for (int y = 0; y < m_height; ++y)
            if (m_flags[indexOf(x, y)] == Seed)
                enqueue(indexOf(x, y));
}

void BorderColorFiller::fill(size_t index, const ChannelTables& tables) {
    const int x = static_cast<int>(index % static_cast<size_t>(m_width));
    const int y = static_cast<int>(index / static_cast<size_t>(m_width));
    const Block block = blockAround(x, y);
    m_rows[y][x] = tables.reduced(meanColor(block));
    m_flags[index] |= Colored;
    for (int column = block.left; column <= block.right; ++column)
        for (int row = block.top; row <= block.bottom; ++row)
            if (const size_t neighbour = indexOf(column, row); !(m_flags[neighbour] & Queued))
                enqueue(neighbour);
}

/// Rounded to nearest, with alpha 0. At least one pixel of the block has a colour: the one that queued this
/// one.
QRgb BorderColorFiller::meanColor(const Block& block) const {
    int red = 0;
    int green = 0;
    int blue = 0;
    int count = 0;
    for (int y = block.top; y <= block.bottom; ++y) {
        for (int x = block.left; x <= block.right; ++x) {
            if (!(m_flags[indexOf(x, y)] & Colored))
                continue;
            const QRgb pixel = m_rows[y][x];
            red += qRed(pixel);
            green += qGreen(pixel);
            blue += qBlue(pixel);
            ++count;
        }
    }
    const auto mean = [count](int sum) { return (2 * sum + count) / (2 * count); };
    return qRgba(mean(red), mean(green), mean(blue), 0);
}

void BorderColorFiller::enqueue(size_t index) {
    m_flags[index] |= Queued;
    m_queue[m_writeIndex++] = static_cast<quint32>(index);
}

QImage fillBorderColors(const QImage& image, PixelFormatCode format) {
    if (image.isNull())
        return {};
    try {
        return BorderColorFiller(toArgb32(image), format).run();
    } catch (const std::bad_alloc&) {
        throwOutOfMemory();
    }
}
