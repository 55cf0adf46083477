#include "SampleFiles.h"

#include "PvrPixelFormat.h"
#include "PvrWriter.h"
#include <functional>
#include <vector>

namespace {

QImage alphaOnly(const QImage& picture) {
    QImage image = picture;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, picture.pixel(x, y) & 0xFF000000);
    return image;
}

/// Pixel by pixel from the top left.
QByteArray pixelBytes(const QImage& picture, const std::function<QByteArray(QRgb)>& bytesOf) {
    QByteArray bytes;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            bytes += bytesOf(picture.pixel(x, y));
    return bytes;
}

QByteArray bgr(QRgb pixel) { return littleEndian(pixel, 3); }
QByteArray bgra(QRgb pixel) { return littleEndian(pixel, 4); }
QByteArray rgb(QRgb pixel) { return bigEndian(pixel, 3); }
QByteArray rgba(QRgb pixel) { return rgb(pixel) + bigEndian(uint(qAlpha(pixel)), 1); }

/// A word of channels, the first at the top; each is all ones or none.
std::function<QByteArray(QRgb)> packed(const char* letters, std::vector<int> widths) {
    return [=](QRgb pixel) {
        quint64 word = 0;
        int bits = 0;
        for (std::size_t i = 0; i < widths.size(); ++i) {
            const int channel = letters[i] == 'r'   ? qRed(pixel)
                                : letters[i] == 'g' ? qGreen(pixel)
                                : letters[i] == 'b' ? qBlue(pixel)
                                                    : qAlpha(pixel);
            word = word << widths[i] | (channel != 0 ? (1U << widths[i]) - 1 : 0);
            bits += widths[i];
        }
        return littleEndian(word, bits / 8);
    };
}

} // namespace

QByteArray littleEndian(quint64 number, int count) {
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += char(number >> (8 * i));
    return bytes;
}

QByteArray bigEndian(quint64 number, int count) {
    QByteArray bytes;
    while (count-- > 0)
        bytes += char(number >> (8 * count));
    return bytes;
}

QImage samplePicture(bool withAlpha) {
    QImage image(7, 5, withAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const int number = (x + 3 * y) % 8;
            const QRgb color = qRgb(number & 4 ? 255 : 0, number & 2 ? 255 : 0, number & 1 ? 255 : 0);
            image.setPixel(x, y, withAlpha && (x == 2 || y > x) ? 0 : color);
        }
    return image;
}

QImage greyPicture() {
    QImage image = samplePicture(false);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(1, 1, 1) * uint(x == 3 ? 0 : 40 * y + x / 2) | 0xFF000000);
    return image;
}

// ---- Targa

namespace {

enum TgaPlace { TopLeft = 0x20, BottomLeft = 0, TopRight = 0x30 };

QByteArray tgaFile(int type, const QByteArray& map, int mapBits, int bits, TgaPlace place,
                   const QByteArray& pixels) {
    const int entries = map.size() / std::max(mapBits / 8, 1);
    return littleEndian(3, 1) + char(mapBits ? 1 : 0) + char(type) + littleEndian(0, 2) +
           littleEndian(uint(entries), 2) + char(mapBits) + littleEndian(0, 4) + littleEndian(7, 2) +
           littleEndian(5, 2) + char(bits) + char(place) + "tag" + map + pixels;
}

/// Packets of three units, a run where they are equal.
QByteArray tgaPackets(const QByteArray& bytes, int unit) {
    QByteArray result;
    for (int at = 0; at < bytes.size(); at += 3 * unit) {
        const QByteArray part = bytes.mid(at, 3 * unit);
        const int count = part.size() / unit;
        const bool isRun = part == part.left(unit).repeated(count);
        result += char((isRun ? 0x80 : 0) | (count - 1));
        result += isRun ? part.left(unit) : part;
    }
    return result;
}

QByteArray grey(QRgb pixel) { return bigEndian(uint(qRed(pixel)), 1); }

} // namespace

QList<SampleFile> tgaSamples() {
    const QImage opaque = samplePicture(false), alpha = samplePicture(true), greys = greyPicture();
    QByteArray map, indices;
    for (int i = 0; i < 8; ++i)
        map += bgr(qRgb(i & 4 ? 255 : 0, i & 2 ? 255 : 0, i & 1 ? 255 : 0));
    indices = pixelBytes(opaque, [](QRgb p) {
        return bigEndian((qRed(p) ? 4U : 0) | (qGreen(p) ? 2U : 0) | (qBlue(p) ? 1U : 0), 1);
    });
    const auto words = packed("xrgb", {1, 5, 5, 5});
    struct Kind {
        const char* name;
        int type, bits;
        QByteArray pixels;
        QImage picture;
    };
    const Kind kinds[] = {{"mapped", 1, 8, indices, opaque},
                          {"16bit", 2, 16, pixelBytes(opaque, words), opaque},
                          {"24bit", 2, 24, pixelBytes(opaque, bgr), opaque},
                          {"32bit", 2, 32, pixelBytes(alpha, bgra), alpha},
                          {"grey", 3, 8, pixelBytes(greys, grey), greys}};
    QList<SampleFile> files;
    for (const Kind& kind : kinds) {
        const QByteArray colors = kind.type == 1 ? map : QByteArray();
        const int mapBits = kind.type == 1 ? 24 : 0;
        const QString name = QString::fromLatin1(kind.name);
        files += {name + QStringLiteral(".tga"),
                  tgaFile(kind.type, colors, mapBits, kind.bits, TopLeft, kind.pixels), kind.picture};
        files += {name + QStringLiteral("_bottom.tga"),
                  tgaFile(kind.type, colors, mapBits, kind.bits, BottomLeft, kind.pixels),
                  kind.picture.mirrored()};
        files += {name + QStringLiteral("_packed.tga"),
                  tgaFile(kind.type + 8, colors, mapBits, kind.bits, TopLeft,
                          tgaPackets(kind.pixels, kind.bits / 8)),
                  kind.picture};
    }
    files += {QStringLiteral("right_with_map.tga"),
              tgaFile(2, map, 16, 24, TopRight, pixelBytes(opaque, bgr)), opaque.mirrored(true, false)};
    return files;
}

// ---- PPM

QList<SampleFile> ppmSamples() {
    const QImage opaque = samplePicture(false);
    const QByteArray bytes = pixelBytes(opaque, rgb);
    const QByteArray text = pixelBytes(opaque, [](QRgb p) {
        return QByteArray::number(qRed(p)) + '\n' + QByteArray::number(qGreen(p)) + "  " +
               QByteArray::number(qBlue(p)) + '\t';
    });
    return {{QStringLiteral("binary.ppm"), "P6\n7 5\n255\n" + bytes, opaque},
            {QStringLiteral("comments.ppm"), "P6 # one\n7 #two\r\n# three\n5\n255\r\n" + bytes, opaque},
            {QStringLiteral("ascii.ppm"), "P3\n# one\n7 5 255\n" + text, opaque}};
}

// ---- PSD

namespace {

QByteArray psdFile(int channels, int compression, const QByteArray& planes) {
    const QByteArray lengths = compression == 1 ? QByteArray(2 * channels * 5, '\x55') : QByteArray();
    return "8BPS" + bigEndian(1, 2) + QByteArray(6, '\0') + bigEndian(uint(channels), 2) + bigEndian(5, 4) +
           bigEndian(7, 4) + bigEndian(8, 2) + bigEndian(3, 2) + bigEndian(0, 4) + bigEndian(4, 4) + "rsrc" +
           bigEndian(6, 4) + "layers" + bigEndian(uint(compression), 2) + lengths + planes;
}

/// As such a file holds it: over white.
QRgb overWhite(QRgb p) {
    const auto over = [&](int c) { return (c * qAlpha(p) + 255 * (255 - qAlpha(p)) + 127) / 255; };
    return qRgba(over(qRed(p)), over(qGreen(p)), over(qBlue(p)), qAlpha(p));
}

QByteArray plane(const QImage& picture, int shift) {
    return pixelBytes(picture, [=](QRgb p) { return bigEndian(overWhite(p) >> shift & 0xFF, 1); });
}

/// Alternately a run and a literal, and a code that does nothing before each plane's end.
QByteArray packBits(const QByteArray& plane) {
    QByteArray result;
    for (int at = 0; at < plane.size();) {
        int run = 1;
        while (at + run < plane.size() && plane[at + run] == plane[at])
            ++run;
        if (run > 1)
            result += bigEndian(uint(257 - run), 1) + plane[at];
        else
            result += bigEndian(0, 1) + plane[at];
        at += run;
        if (at + 1 == plane.size())
            result += char(0x80);
    }
    return result;
}

} // namespace

QList<SampleFile> psdSamples() {
    QImage alpha = samplePicture(true);
    alpha.setPixel(4, 1, qRgba(255, 0, 255, 51)); // what comes back without loss
    QImage red = samplePicture(false);
    for (int y = 0; y < 5; ++y)
        for (int x = 0; x < 7; ++x)
            red.setPixel(x, y, red.pixel(x, y) & 0xFFFF0000);
    QList<QByteArray> planes;
    for (const int shift : {16, 8, 0, 24})
        planes += plane(alpha, shift);
    const QImage opaque = samplePicture(false);
    return {
        {QStringLiteral("raw.psd"), psdFile(4, 0, planes.join()), alpha},
        {QStringLiteral("more_channels.psd"), psdFile(5, 0, planes.join() + QByteArray(35, 'x')), alpha},
        {QStringLiteral("packed.psd"),
         psdFile(4, 1, packBits(planes[0]) + packBits(planes[1]) + packBits(planes[2]) + packBits(planes[3])),
         alpha},
        {QStringLiteral("opaque.psd"),
         psdFile(3, 1, packBits(plane(opaque, 16)) + packBits(plane(opaque, 8)) + packBits(plane(opaque, 0))),
         opaque},
        {QStringLiteral("red.psd"), psdFile(1, 0, plane(opaque, 16)), red}};
}

// ---- PVR

QByteArray pvr2File(quint32 flags, int width, int height, const QByteArray& pixels, quint32 alphaMask) {
    QByteArray bytes;
    for (const quint32 word :
         {52U, quint32(height), quint32(width), 0U, flags, quint32(pixels.size()), 0U, 0U, 0U, 0U, alphaMask})
        bytes += littleEndian(word, 4);
    return bytes + "PVR!" + littleEndian(1, 4) + pixels;
}

QByteArray pvr3File(quint64 format, quint32 channelType, int width, int height, const QByteArray& pixels,
                    const QByteArray& metadata) {
    QByteArray bytes = "PVR\x03" + littleEndian(2, 4) + littleEndian(format, 8);
    for (const quint32 word :
         {0U, channelType, quint32(height), quint32(width), 1U, 1U, 1U, 1U, quint32(metadata.size())})
        bytes += littleEndian(word, 4);
    return bytes + metadata + pixels;
}

QByteArray cczFile(const QByteArray& stream, quint32 size, int type, int version) {
    return "CCZ!" + bigEndian(uint(type), 2) + bigEndian(uint(version), 2) + bigEndian(0x12345678, 4) +
           bigEndian(size, 4) + stream;
}

QList<SampleFile> pvrSamples() {
    namespace Format = pvrPixelFormat;
    // All of them are read with an alpha channel.
    const QImage opaque = samplePicture(false).convertToFormat(QImage::Format_ARGB32);
    const QImage greys = greyPicture().convertToFormat(QImage::Format_ARGB32);
    const QImage alpha = samplePicture(true);
    QImage greyAlpha = greys;
    greyAlpha.setPixel(1, 1, qRgba(9, 9, 9, 77));
    const auto alphaByte = [](QRgb p) { return bigEndian(uint(qAlpha(p)), 1); };
    const auto alphaGrey = [](QRgb p) { return bigEndian(uint(qAlpha(p)), 1) + bigEndian(uint(qRed(p)), 1); };
    struct Kind {
        const char* name;
        quint32 type;   ///< of version 2
        quint64 format; ///< of version 3
        std::function<QByteArray(QRgb)> bytesOf;
        QImage picture;
    };
    const Kind kinds[] = {
        {"rgba8888", 0x12, Format::rgba8888, rgba, alpha},
        {"bgra8888", 0x1A, Format::bgra8888, bgra, alpha},
        {"rgba4444", 0x10, Format::rgba4444, packed("rgba", {4, 4, 4, 4}), alpha},
        {"rgba5551", 0x11, Format::rgba5551, packed("rgba", {5, 5, 5, 1}), alpha},
        {"rgb565", 0x13, Format::rgb565, packed("rgb", {5, 6, 5}), opaque},
        {"rgb555", 0x14, Format::channels("xrgb", {1, 5, 5, 5}), packed("xrgb", {1, 5, 5, 5}), opaque},
        {"rgb888", 0x15, Format::rgb888, rgb, opaque},
        {"i8", 0x16, Format::channels("l", {8}), grey, greys},
        {"ai88", 0x17, Format::alphaIntensity, alphaGrey, greyAlpha},
        {"a8", 0x1B, Format::alpha, alphaByte, alphaOnly(alpha)},
        {"argb4444", 0x00, Format::channels("argb", {4, 4, 4, 4}), packed("argb", {4, 4, 4, 4}), alpha},
        {"argb1555", 0x01, Format::channels("argb", {1, 5, 5, 5}), packed("argb", {1, 5, 5, 5}), alpha},
        {"rgb565_old", 0x02, Format::rgb565, packed("rgb", {5, 6, 5}), opaque},
        {"rgb888_old", 0x04, Format::rgb888, rgb, opaque},
        {"argb8888_old", 0x05, Format::bgra8888, bgra, alpha},
    };
    QList<SampleFile> files;
    for (const Kind& kind : kinds) {
        const QString name = QString::fromLatin1(kind.name);
        const QByteArray pixels = pixelBytes(kind.picture, kind.bytesOf);
        const QByteArray version2 = pvr2File(kind.type, 7, 5, pixels);
        const QByteArray version1 = littleEndian(44, 4) + version2.mid(4, 40) + pixels;
        const QByteArray version3 = pvr3File(kind.format, 0, 7, 5, pixels, "meta");
        files += {name + QStringLiteral("_1.pvr"), version1, kind.picture};
        files += {name + QStringLiteral("_2.pvr"), version2, kind.picture};
        files += {name + QStringLiteral("_3.pvrtc"), version3, kind.picture};
        if (kind.type == 0x10) {
            // Zlib itself is the judge of the packed streams.
            files += {name + QStringLiteral(".pvr.ccz"),
                      cczFile(qCompress(version3).mid(4), quint32(version3.size())), kind.picture};
            files += {name + QStringLiteral(".pvr.gz"), gzipStream(version2), kind.picture};
        }
    }
    return files;
}
