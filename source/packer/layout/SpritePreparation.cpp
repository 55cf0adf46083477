#include "SpritePreparation.h"

#include "DrawOver.h"
#include "NewImage.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace SpritePreparation {

namespace {

const QRgb* constLine(const QImage& image, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(y));
}

QRgb* line(QImage& image, int y) { return reinterpret_cast<QRgb*>(image.scanLine(y)); }

/// 16,384 x 16,384: paddings and extrusion of many pixels must not take a build machine's memory.
constexpr qint64 maxPreparedPixels = 0x10000000;

QImage transparentImage(qint64 width, qint64 height) {
    if (width > maxPreparedPixels / std::max<qint64>(height, 1))
        throwOutOfMemory();
    QImage image = newImage(width, height);
    image.fill(0U);
    return image;
}

/// Copies all of `image` into the larger `target`.
void place(const QImage& image, QImage& target, int left, int top) {
    for (int y = 0; y < image.height(); ++y)
        std::copy_n(constLine(image, y), image.width(), line(target, top + y) + left);
}

qint64 roundedUp(qint64 value, int divisor) {
    const qint64 step = std::max(divisor, 1);
    return (value + step - 1) / step * step;
}

/// First and last place of a line or column.
struct Span {
    int first, last;
};

bool hasOpaque(const QRgb* pixels, int width, int threshold) {
    return std::any_of(pixels, pixels + width, [=](QRgb pixel) { return qAlpha(pixel) >= threshold; });
}

std::optional<Span> opaqueRows(const QImage& image, int threshold) {
    const auto opaque = [&](int y) { return hasOpaque(constLine(image, y), image.width(), threshold); };
    int first = 0;
    while (first < image.height() && !opaque(first))
        ++first;
    if (first == image.height())
        return {};
    int last = image.height() - 1;
    while (last > first && !opaque(last))
        --last;
    return Span{first, last};
}

/// Each row is looked at only as far as it could widen the span.
Span opaqueColumns(const QImage& image, const Span& rows, int threshold) {
    Span columns{image.width(), -1};
    for (int y = rows.first; y <= rows.last; ++y) {
        const QRgb* pixels = constLine(image, y);
        int x = 0;
        while (x < columns.first && qAlpha(pixels[x]) < threshold)
            ++x;
        columns.first = x;
        x = image.width() - 1;
        while (x > columns.last && qAlpha(pixels[x]) < threshold)
            --x;
        columns.last = x;
    }
    return columns;
}

/// Makes room for the extruded pixels, unless the span starts or ends so near to the edge that not all of
/// them fit: then that end stays where it is. The test at the start is stricter by one than that at the end.
Span withExtrusion(Span span, int side, int extrude) {
    if (span.first > extrude)
        span.first -= extrude;
    if (span.last < side - extrude)
        span.last += extrude;
    return span;
}

/// A part that is off the centre of the whole by half a pixel couldn't be told to formats that count from the
/// centre.
Span withParity(Span span, int side) {
    if ((span.last - span.first + 1 - side) % 2 != 0) {
        if (span.first > 0)
            --span.first;
        else
            ++span.last;
    }
    return span;
}

Span aligned(const Span& span, int divisor) {
    const qint64 end = roundedUp(qint64{span.last} + 1, divisor);
    if (end > std::numeric_limits<int>::max())
        throwOutOfMemory();
    return {span.first - span.first % std::max(divisor, 1), static_cast<int>(end) - 1};
}

} // namespace

int length(uint value) { return static_cast<int>(std::min<uint>(value, std::numeric_limits<int>::max())); }

QImage maskHeuristically(const QImage& image) {
    if (image.isNull())
        return {};
    const QImage mask = image.createHeuristicMask(true);
    QImage result = image.copy();
    if (mask.isNull() || result.isNull())
        throwOutOfMemory();
    for (int y = 0; y < result.height(); ++y) {
        const uchar* bits = mask.constScanLine(y); // least significant bit first
        QRgb* pixels = line(result, y);
        for (int x = 0; x < result.width(); ++x)
            if (!(bits[x >> 3] & 1 << (x & 7)))
                pixels[x] = 0;
    }
    return result;
}

QImage extrudeBorder(const QImage& image, int extrude) {
    if (image.isNull() || extrude <= 0)
        return image;
    const int width = image.width();
    const int height = image.height();
    QImage result = transparentImage(width + 2 * qint64{extrude}, height + 2 * qint64{extrude});
    for (int y = 0; y < height; ++y) {
        const QRgb* from = constLine(image, y);
        QRgb* to = line(result, extrude + y);
        std::fill_n(to, extrude, from[0]);
        std::copy_n(from, width, to + extrude);
        std::fill_n(to + extrude + width, extrude, from[width - 1]);
    }
    const QRgb* first = constLine(result, extrude);
    const QRgb* last = constLine(result, extrude + height - 1);
    for (int y = 0; y < extrude; ++y) {
        std::copy_n(first, result.width(), line(result, y));
        std::copy_n(last, result.width(), line(result, extrude + height + y));
    }
    return result;
}

QImage padToDivisors(const QImage& image, int divisorX, int divisorY) {
    const qint64 width = roundedUp(image.width(), divisorX);
    const qint64 height = roundedUp(image.height(), divisorY);
    if (image.isNull() || (width == image.width() && height == image.height()))
        return image;
    QImage result = transparentImage(width, height);
    place(image, result, static_cast<int>((width - image.width()) / 2),
          static_cast<int>((height - image.height()) / 2));
    return result;
}

TrimResult trimTransparent(const QImage& image, int threshold, int extrude, int divisorX, int divisorY) {
    if (image.isNull())
        return {};
    const std::optional<Span> opaque = opaqueRows(image, threshold);
    if (!opaque)
        return {transparentImage(std::max(divisorX, 1) + 2 * qint64{extrude},
                                 std::max(divisorY, 1) + 2 * qint64{extrude}),
                {}};
    Span columns = withExtrusion(opaqueColumns(image, *opaque, threshold), image.width(), extrude);
    Span rows = withExtrusion(*opaque, image.height(), extrude);
    columns = aligned(withParity(columns, image.width()), divisorX);
    rows = aligned(withParity(rows, image.height()), divisorY);
    const QRect kept(QPoint(columns.first, rows.first), QPoint(columns.last, rows.last));
    return {cutOut(image, kept), kept.topLeft()};
}

QImage addInnerPadding(const QImage& image, int padding) {
    if (image.isNull() || padding <= 0)
        return image;
    QImage result =
        transparentImage(image.width() + 2 * qint64{padding}, image.height() + 2 * qint64{padding});
    place(image, result, padding, padding);
    return result;
}

QImage drawDebugFrame(const QImage& image) {
    if (image.isNull())
        return {};
    constexpr QRgb tint = 0x80ff0000;
    constexpr QRgb outline = 0xffff0000;
    QImage result = newImage(image.size());
    result.fill(tint);
    // One pixel inside, so that the right and bottom lines stay visible where sprites are packed without
    // padding. In an image of one pixel the two lines fall together.
    const int right = std::max(image.width() - 2, 0);
    const int bottom = std::max(image.height() - 2, 0);
    std::fill_n(line(result, 0), right + 1, outline);
    std::fill_n(line(result, bottom), right + 1, outline);
    for (int y = 0; y <= bottom; ++y)
        line(result, y)[0] = line(result, y)[right] = outline;
    drawOver(image, result);
    return result;
}

QImage cutOut(const QImage& image, const QRect& rectangle) {
    if (image.isNull() || rectangle.isEmpty())
        return {};
    QImage result = transparentImage(rectangle.width(), rectangle.height());
    const QRect inside = rectangle.intersected(image.rect());
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        std::copy_n(constLine(image, y) + inside.left(), inside.width(),
                    line(result, y - rectangle.top()) + (inside.left() - rectangle.left()));
    return result;
}

quint32 pixelHash(const QImage& image) {
    if (image.isNull())
        return 0;
    quint32 hash = 0;
    for (int i = 0; i < 100; ++i)
        hash = (hash << 4 | hash >> 28) ^ constLine(image, i % image.height())[i % image.width()];
    return hash == 0 ? 1 : hash;
}

} // namespace SpritePreparation
