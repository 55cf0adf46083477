#include "TiffReader.h"

#include "ImageLimits.h"
#include "PluginImage.h"
#include "TiffDevice.h"

#include <tiffio.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

constexpr qint64 maximumTileSize = 1 << 26; ///< bytes

struct Shape {
    uint32_t width = 0, height = 0;
    uint16_t bits = 0, samples = 0, sampleFormat = 0, photometric = 0, planes = 0;
    uint32_t tileWidth = 0, tileHeight = 0; ///< 0 in a file of strips
    bool premultiplied = false;

    bool hasAlpha() const { return samples == 2 || (samples == 4 && photometric != PHOTOMETRIC_SEPARATED); }
    bool isGrey() const { return samples <= 2; }
    std::size_t sampleSize() const { return bits / 8U; }
    /// Samples that stand side by side.
    int interleaved() const { return planes == PLANARCONFIG_SEPARATE ? 1 : samples; }
};

void readTileSides(TIFF* file, Shape& shape) {
    if (!TIFFIsTiled(file))
        return;
    TIFFGetField(file, TIFFTAG_TILEWIDTH, &shape.tileWidth);
    TIFFGetField(file, TIFFTAG_TILELENGTH, &shape.tileHeight);
}

Shape readShape(TIFF* file) {
    Shape shape;
    TIFFGetField(file, TIFFTAG_IMAGEWIDTH, &shape.width);
    TIFFGetField(file, TIFFTAG_IMAGELENGTH, &shape.height);
    TIFFGetFieldDefaulted(file, TIFFTAG_BITSPERSAMPLE, &shape.bits);
    TIFFGetFieldDefaulted(file, TIFFTAG_SAMPLESPERPIXEL, &shape.samples);
    TIFFGetFieldDefaulted(file, TIFFTAG_SAMPLEFORMAT, &shape.sampleFormat);
    TIFFGetFieldDefaulted(file, TIFFTAG_PLANARCONFIG, &shape.planes);
    if (!TIFFGetField(file, TIFFTAG_PHOTOMETRIC, &shape.photometric))
        shape.photometric = shape.isGrey() ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB;
    uint16_t extraCount = 0;
    uint16_t* extra = nullptr;
    TIFFGetFieldDefaulted(file, TIFFTAG_EXTRASAMPLES, &extraCount, &extra);
    shape.premultiplied = extraCount == 1 && extra[0] == EXTRASAMPLE_ASSOCALPHA;
    // Pictures of the JPEG kind come out as colours if they are asked to.
    uint16_t compression = COMPRESSION_NONE;
    TIFFGetFieldDefaulted(file, TIFFTAG_COMPRESSION, &compression);
    if (compression == COMPRESSION_JPEG && shape.photometric == PHOTOMETRIC_YCBCR &&
        TIFFSetField(file, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB))
        shape.photometric = PHOTOMETRIC_RGB;
    readTileSides(file, shape);
    return shape;
}

bool isSupported(const Shape& shape) {
    const bool isFloat = shape.sampleFormat == SAMPLEFORMAT_IEEEFP;
    if (shape.samples < 1 || shape.samples > 4 || shape.sampleFormat > SAMPLEFORMAT_VOID ||
        (isFloat && shape.bits != 32))
        return false;
    switch (shape.photometric) {
    case PHOTOMETRIC_MINISWHITE:
    case PHOTOMETRIC_MINISBLACK:
        return true;
    case PHOTOMETRIC_RGB:
        return shape.samples >= 3;
    case PHOTOMETRIC_PALETTE:
        return shape.samples == 1 && shape.bits == 8;
    case PHOTOMETRIC_SEPARATED:
        return shape.samples == 4;
    default:
        return false;
    }
}

/// Sides are multiples of 16, as TIFF 6.0 wants them: a picture of tiny tiles is mere work. So is one whose
/// tiles reach far beyond it.
bool tilesAreSane(TIFF* file, const Shape& shape) {
    const auto fits = [](uint32_t side, uint32_t whole) {
        return side % 16 == 0 && side <= std::max(whole + 16, 1024U);
    };
    return fits(shape.tileWidth, shape.width) && fits(shape.tileHeight, shape.height) &&
           TIFFTileSize64(file) <= uint64_t{maximumTileSize};
}

/// To eight bits, rounded to nearest; floats are cut to 0 to 1.
quint8 toByte(double value) {
    return static_cast<quint8>(value > 0 ? std::lround(std::min(value, 1.0) * 255) : 0);
}

quint8 sampleAt(const quint8* bytes, const Shape& shape) {
    if (shape.bits == 8)
        return *bytes;
    if (shape.bits == 16) {
        quint16 sample = 0;
        std::memcpy(&sample, bytes, sizeof sample);
        return static_cast<quint8>((sample + 128U) / 257U);
    }
    if (shape.sampleFormat == SAMPLEFORMAT_IEEEFP) {
        float sample = 0;
        std::memcpy(&sample, bytes, sizeof sample);
        return toByte(static_cast<double>(sample));
    }
    quint32 sample = 0;
    std::memcpy(&sample, bytes, sizeof sample);
    return toByte((sample >> 8) / 16777215.0);
}

/// Part of a row: `count` pixels from (x, y). `bytes` holds one sample of a plane each, or all of the pixels.
struct Segment {
    int x, y, count, plane;
    const quint8* bytes;
};

/// What a sample of that number makes of the byte 1 in a pixel; its channels can be or-ed.
QRgb channelOf(const Shape& shape, int sample) {
    static constexpr QRgb colors[] = {1U << 16, 1U << 8, 1U, 1U << 24};
    static constexpr QRgb greys[] = {1U << 16 | 1U << 8 | 1U, 1U << 24};
    return shape.isGrey() ? greys[sample] : colors[sample];
}

void take(const Segment& segment, const Shape& shape, QImage& image) {
    QRgb* row = PluginImage::row(image, segment.y) + segment.x;
    if (segment.plane == 0)
        std::fill_n(row, segment.count, 0U);
    const std::size_t step = shape.sampleSize() * static_cast<std::size_t>(shape.interleaved());
    for (int i = 0; i < shape.interleaved(); ++i) {
        const quint8* from = segment.bytes + shape.sampleSize() * static_cast<std::size_t>(i);
        const QRgb channel = channelOf(shape, segment.plane + i);
        for (int x = 0; x < segment.count; ++x, from += step)
            row[x] |= sampleAt(from, shape) * channel;
    }
}

bool readStrips(TIFF* file, const Shape& shape, QImage& image) {
    std::vector<quint8> row(static_cast<std::size_t>(TIFFScanlineSize64(file)));
    const auto needed = static_cast<std::size_t>(image.width() * shape.interleaved()) * shape.sampleSize();
    if (row.size() < needed)
        return false;
    for (int plane = 0; plane < shape.samples; plane += shape.interleaved())
        for (int y = 0; y < image.height(); ++y) {
            if (TIFFReadScanline(file, row.data(), static_cast<uint32_t>(y), static_cast<uint16_t>(plane)) <
                0)
                return false;
            take({0, y, image.width(), plane, row.data()}, shape, image);
        }
    return true;
}

bool readTile(TIFF* file, const Shape& shape, int left, int top, int plane, std::vector<quint8>& tile,
              QImage& image) {
    if (TIFFReadTile(file, tile.data(), static_cast<uint32_t>(left), static_cast<uint32_t>(top), 0,
                     static_cast<uint16_t>(plane)) < 0)
        return false;
    const auto width = static_cast<int>(shape.tileWidth);
    const int bottom = std::min(top + static_cast<int>(shape.tileHeight), image.height());
    const std::size_t pitch = tile.size() / shape.tileHeight;
    for (int y = top; y < bottom; ++y)
        take({left, y, std::min(width, image.width() - left), plane,
              tile.data() + pitch * static_cast<std::size_t>(y - top)},
             shape, image);
    return true;
}

bool readTiles(TIFF* file, const Shape& shape, QImage& image) {
    const std::size_t pixelSize = static_cast<std::size_t>(shape.interleaved()) * shape.sampleSize();
    std::vector<quint8> tile(static_cast<std::size_t>(TIFFTileSize64(file)));
    if (tile.empty() || tile.size() < std::size_t{shape.tileWidth} * shape.tileHeight * pixelSize)
        return false;
    for (int plane = 0; plane < shape.samples; plane += shape.interleaved())
        for (int top = 0; top < image.height(); top += static_cast<int>(shape.tileHeight))
            for (int left = 0; left < image.width(); left += static_cast<int>(shape.tileWidth))
                if (!readTile(file, shape, left, top, plane, tile, image))
                    return false;
    return true;
}

std::vector<QRgb> readPalette(TIFF* file) {
    uint16_t *red = nullptr, *green = nullptr, *blue = nullptr;
    if (!TIFFGetField(file, TIFFTAG_COLORMAP, &red, &green, &blue))
        return {};
    // Sixteen bits, of which some writers fill the upper or the lower half only.
    const auto isWide = [](uint16_t value) { return value > 255; };
    const bool wide = std::any_of(red, red + 256, isWide) || std::any_of(green, green + 256, isWide) ||
                      std::any_of(blue, blue + 256, isWide);
    const auto eight = [=](uint16_t value) { return wide ? value >> 8 : value; };
    std::vector<QRgb> palette(256);
    for (std::size_t i = 0; i < palette.size(); ++i)
        palette[i] = qRgb(eight(red[i]), eight(green[i]), eight(blue[i]));
    return palette;
}

QRgb fromInks(QRgb inks) {
    const int paper = 255 - qAlpha(inks);
    const auto light = [&](int ink) { return ((255 - ink) * paper + 127) / 255; };
    return qRgb(light(qRed(inks)), light(qGreen(inks)), light(qBlue(inks)));
}

/// From the samples, as they stand in the channels, to colours.
bool toColors(TIFF* file, const Shape& shape, QImage& image) {
    const std::vector<QRgb> palette =
        shape.photometric == PHOTOMETRIC_PALETTE ? readPalette(file) : std::vector<QRgb>();
    if (shape.photometric == PHOTOMETRIC_PALETTE && palette.empty())
        return false;
    const QRgb inverted = shape.photometric == PHOTOMETRIC_MINISWHITE ? 0x00FFFFFF : 0;
    for (int y = 0; y < image.height(); ++y) {
        QRgb* row = PluginImage::row(image, y);
        for (int x = 0; x < image.width(); ++x) {
            QRgb pixel = row[x] ^ inverted;
            if (!palette.empty())
                pixel = palette[pixel & 0xFF];
            else if (shape.photometric == PHOTOMETRIC_SEPARATED)
                pixel = fromInks(pixel);
            else if (!shape.hasAlpha())
                pixel |= 0xFF000000;
            else if (shape.premultiplied)
                pixel = qUnpremultiply(pixel);
            row[x] = pixel;
        }
    }
    return true;
}

} // namespace

QImage readTiff(QIODevice& device, const QString& name) {
    const TiffHandle handle = openTiff(device, "r");
    TIFF* file = handle.get();
    if (!file) {
        qDebug("Can't open '%s' for reading", qUtf8Printable(name));
        return {};
    }
    const Shape shape = readShape(file);
    if (shape.bits != 8 && shape.bits != 16 && shape.bits != 32) {
        qDebug("Can't load '%s', only 1 sample per pixel supported", qUtf8Printable(name));
        return {};
    }
    if (!isSupported(shape) || !ImageLimits::accept(shape.width, shape.height) ||
        (TIFFIsTiled(file) && !tilesAreSane(file, shape)))
        return {};
    QImage image = PluginImage::allocate(shape.width, shape.height,
                                         shape.hasAlpha() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (image.isNull())
        return {};
    const bool complete =
        shape.tileWidth > 0 ? readTiles(file, shape, image) : readStrips(file, shape, image);
    return complete && toColors(file, shape, image) ? image : QImage();
}
