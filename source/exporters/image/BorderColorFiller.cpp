#include "BorderColorFiller.h"

#include "NewImage.h"

#include <algorithm>
#include <limits>
#include <new>

namespace {

constexpr int tile = 64;

/// Runs over all pixels in tiles, since rows are near to each other in an image, but columns in the filler.
template <class Visit>
void forEachTiled(int width, int height, Visit visit) {
    for (int left = 0; left < width; left += tile)
        for (int top = 0; top < height; top += tile)
            for (int y = top; y < std::min(top + tile, height); ++y)
                for (int x = left; x < std::min(left + tile, width); ++x)
                    visit(x, y);
}

} // namespace

BorderColorFiller::BorderColorFiller(const QImage& image, PixelFormatCode format)
    : m_width(image.width()), m_height(image.height()), m_stride(static_cast<size_t>(m_height) + 2),
      m_format(format) {
    const size_t places = m_stride * (static_cast<size_t>(m_width) + 2);
    if (places > std::numeric_limits<quint32>::max())
        throwOutOfMemory();
    m_queue.reset(new quint32[places]);
    m_pixels.resize(places);
    m_flags.assign(places, Queued);
    std::vector<const QRgb*> rows;
    for (int y = 0; y < m_height; ++y)
        rows.push_back(reinterpret_cast<const QRgb*>(image.constScanLine(y)));
    forEachTiled(m_width, m_height, [&](int x, int y) {
        const size_t place = placeOf(x, y);
        m_pixels[place] = rows[y][x];
        m_flags[place] = qAlpha(rows[y][x]) != 0 ? Colored | Queued : 0;
    });
}

QImage BorderColorFiller::run() {
    enqueueSeeds();
    if (m_queueEnd > 0) {
        const ChannelTables tables = channelTables(m_format, ReductionRule::Nearest);
        // What one generation of the flood enqueues is the next one.
        for (size_t i = 0; i < m_queueEnd; ++i) {
            const size_t place = m_queue[i];
            m_pixels[place] = tables.reduced(meanColor(place));
            m_flags[place] |= Colored;
            enqueueAround(place);
        }
    }
    return result();
}

/// A pixel that touches a visible one at a corner of its 3 x 3 block, which is cut at the image's edge. Those
/// that touch one along a side only come a generation later: that is meant, and shows in the colours.
bool BorderColorFiller::isSeed(int x, int y) const {
    const int left = std::max(x - 1, 0);
    const int top = std::max(y - 1, 0);
    const int right = std::min(x + 1, m_width - 1);
    const int bottom = std::min(y + 1, m_height - 1);
    return isVisible(left, top) || isVisible(left, bottom) || isVisible(right, top) ||
           isVisible(right, bottom);
}

/// Column by column: the order decides which pixels are coloured first, and so what the others see.
void BorderColorFiller::enqueueSeeds() {
    for (int x = 0; x < m_width; ++x) {
        for (int y = 0; y < m_height; ++y) {
            if (isVisible(x, y) || !isSeed(x, y))
                continue;
            m_flags[placeOf(x, y)] = Queued;
            m_queue[m_queueEnd++] = static_cast<quint32>(placeOf(x, y));
        }
    }
}

/// Rounded to nearest, with alpha 0. At least one pixel of the block has a colour: the one that queued this
/// one.
QRgb BorderColorFiller::meanColor(size_t place) const {
    // Red and blue are far enough apart for the sums of eight.
    quint32 redAndBlue = 0;
    quint32 green = 0;
    quint32 count = 0;
    const QRgb* pixels = m_pixels.data() + (place - m_stride);
    const quint8* flags = m_flags.data() + (place - m_stride);
    for (int column = 0; column < 3; ++column, pixels += m_stride, flags += m_stride) {
        for (int i = -1; i <= 1; ++i) {
            const quint32 colored = flags[i] & Colored;
            const quint32 pixel = pixels[i] & (0U - colored);
            redAndBlue += pixel & 0x00FF00FF;
            green += (pixel >> 8) & 0xFF;
            count += colored;
        }
    }
    const auto mean = [count](quint32 sum) { return static_cast<int>((2 * sum + count) / (2 * count)); };
    return qRgba(mean(redAndBlue >> 16), mean(green), mean(redAndBlue & 0xFFFF), 0);
}

/// Without branches, as nobody could foretell them: each neighbour is written behind the queue's end, and the
/// end moves if it wasn't queued.
void BorderColorFiller::enqueueAround(size_t place) {
    quint32* end = m_queue.get() + m_queueEnd;
    for (size_t column = place - m_stride; column <= place + m_stride; column += m_stride) {
        for (size_t neighbour = column - 1; neighbour <= column + 1; ++neighbour) {
            const quint8 flags = m_flags[neighbour];
            *end = static_cast<quint32>(neighbour);
            end += (flags & Queued) == 0 ? 1 : 0;
            m_flags[neighbour] = flags | Queued;
        }
    }
    m_queueEnd = static_cast<size_t>(end - m_queue.get());
}

QImage BorderColorFiller::result() const {
    QImage image = newImage(m_width, m_height);
    std::vector<QRgb*> rows;
    for (int y = 0; y < m_height; ++y)
        rows.push_back(reinterpret_cast<QRgb*>(image.scanLine(y)));
    forEachTiled(m_width, m_height, [&](int x, int y) { rows[y][x] = m_pixels[placeOf(x, y)]; });
    return image;
}

QImage fillBorderColors(const QImage& image, PixelFormatCode format) {
    if (image.isNull())
        return {};
    try {
        QImage filled = BorderColorFiller(toArgb32(image), format).run();
        filled.setDotsPerMeterX(image.dotsPerMeterX());
        filled.setDotsPerMeterY(image.dotsPerMeterY());
        return filled;
    } catch (const std::bad_alloc&) {
        throwOutOfMemory();
    }
}
