#include "SampleFiles.h"
#include "TiffDevice.h"

#include <QBuffer>

#include <tiffio.h>

#include <vector>

namespace {

struct TiffKind {
    const char* name;
    int bits, samples, photometric;
    int sampleFormat = SAMPLEFORMAT_UINT;
    int planes = PLANARCONFIG_CONTIG;
    int compression = COMPRESSION_NONE;
    int tile = 0;
    int extra = -1;
};

QByteArray tiffSample(int value, const TiffKind& kind) {
    if (kind.sampleFormat == SAMPLEFORMAT_IEEEFP) {
        const float number = float(value) / 255.0F;
        return QByteArray(reinterpret_cast<const char*>(&number), 4);
    }
    return QByteArray(kind.bits / 8, char(value)); // the same as a fraction of its maximum
}

QList<int> tiffSamplesOf(QRgb p, const TiffKind& kind) {
    const int grey = qRed(p);
    switch (kind.photometric) {
    case PHOTOMETRIC_MINISWHITE:
        return {255 - grey};
    case PHOTOMETRIC_MINISBLACK:
        return {grey, qAlpha(p)};
    case PHOTOMETRIC_PALETTE:
        return {255 - grey}; // the map turns the values over
    case PHOTOMETRIC_SEPARATED:
        return {255 - qRed(p), 255 - qGreen(p), 255 - qBlue(p), 0};
    default:
        return {qRed(p), qGreen(p), qBlue(p), qAlpha(p)};
    }
}

void writeTiles(TIFF* file, const QImage& picture, const TiffKind& kind) {
    for (int top = 0; top < picture.height(); top += kind.tile)
        for (int left = 0; left < picture.width(); left += kind.tile) {
            QByteArray tile;
            for (int i = 0; i < kind.tile * kind.tile; ++i) {
                const int x = left + i % kind.tile, y = top + i / kind.tile;
                const QRgb pixel = picture.valid(x, y) ? picture.pixel(x, y) : 0;
                for (int sample = 0; sample < kind.samples; ++sample)
                    tile += tiffSample(tiffSamplesOf(pixel, kind)[sample], kind);
            }
            TIFFWriteTile(file, tile.data(), uint(left), uint(top), 0, 0);
        }
}

void writeRows(TIFF* file, const QImage& picture, const TiffKind& kind) {
    const bool separate = kind.planes == PLANARCONFIG_SEPARATE;
    for (int plane = 0; plane < (separate ? kind.samples : 1); ++plane)
        for (int y = 0; y < picture.height(); ++y) {
            QByteArray row;
            for (int x = 0; x < picture.width(); ++x)
                for (int sample = 0; sample < kind.samples; ++sample)
                    if (!separate || sample == plane)
                        row += tiffSample(tiffSamplesOf(picture.pixel(x, y), kind)[sample], kind);
            TIFFWriteScanline(file, row.data(), uint(y), uint16_t(plane));
        }
}

QByteArray tiffFile(const QImage& picture, const TiffKind& kind) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadWrite);
    {
        const TiffHandle handle = openTiff(buffer, "w");
        TIFF* file = handle.get();
        TIFFSetField(file, TIFFTAG_IMAGEWIDTH, picture.width());
        TIFFSetField(file, TIFFTAG_IMAGELENGTH, picture.height());
        TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, kind.bits);
        TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, kind.samples);
        TIFFSetField(file, TIFFTAG_SAMPLEFORMAT, kind.sampleFormat);
        TIFFSetField(file, TIFFTAG_PHOTOMETRIC, kind.photometric);
        TIFFSetField(file, TIFFTAG_PLANARCONFIG, kind.planes);
        TIFFSetField(file, TIFFTAG_COMPRESSION, kind.compression);
        if (kind.extra >= 0) {
            const auto extra = uint16_t(kind.extra);
            TIFFSetField(file, TIFFTAG_EXTRASAMPLES, 1, &extra);
        }
        if (kind.photometric == PHOTOMETRIC_PALETTE) {
            std::vector<uint16_t> map(256);
            for (std::size_t i = 0; i < 256; ++i)
                map[i] = uint16_t((255 - i) * 257);
            TIFFSetField(file, TIFFTAG_COLORMAP, map.data(), map.data(), map.data());
        }
        if (kind.tile > 0) {
            TIFFSetField(file, TIFFTAG_TILEWIDTH, kind.tile);
            TIFFSetField(file, TIFFTAG_TILELENGTH, kind.tile);
            writeTiles(file, picture, kind);
        } else {
            TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, 2);
            writeRows(file, picture, kind);
        }
    }
    return bytes;
}

} // namespace

QList<SampleFile> tiffSamples() {
    const QImage opaque = samplePicture(false), alpha = samplePicture(true), greys = greyPicture();
    QImage large(20, 19, QImage::Format_ARGB32);
    for (int i = 0; i < 20 * 19; ++i)
        large.setPixel(i % 20, i / 20, alpha.pixel(i % 7, i % 5));
    QImage faint = alpha;
    faint.setPixel(3, 3, qRgba(255, 0, 51, 50));
    QImage premultiplied = faint;
    premultiplied.setPixel(3, 3, qRgba(50, 0, 10, 50));
    const TiffKind plain{"rgb8", 8, 3, PHOTOMETRIC_RGB};
    const std::pair<TiffKind, QImage> kinds[] = {
        {plain, opaque},
        {{"rgba8", 8, 4, PHOTOMETRIC_RGB, SAMPLEFORMAT_UINT, PLANARCONFIG_CONTIG, COMPRESSION_LZW, 0,
          EXTRASAMPLE_UNASSALPHA},
         faint},
        {{"rgba16_planes", 16, 4, PHOTOMETRIC_RGB, SAMPLEFORMAT_UINT, PLANARCONFIG_SEPARATE,
          COMPRESSION_ADOBE_DEFLATE},
         faint},
        {{"rgb32", 32, 3, PHOTOMETRIC_RGB}, opaque},
        {{"rgba_float", 32, 4, PHOTOMETRIC_RGB, SAMPLEFORMAT_IEEEFP}, faint},
        {{"tiles", 8, 4, PHOTOMETRIC_RGB, SAMPLEFORMAT_UINT, PLANARCONFIG_CONTIG, COMPRESSION_PACKBITS, 16},
         large},
        {{"grey", 8, 1, PHOTOMETRIC_MINISBLACK}, greys},
        {{"white", 8, 1, PHOTOMETRIC_MINISWHITE}, greys},
        {{"palette", 8, 1, PHOTOMETRIC_PALETTE}, greys},
        {{"grey_alpha", 16, 2, PHOTOMETRIC_MINISBLACK}, greys.convertToFormat(QImage::Format_ARGB32)},
        {{"inks", 8, 4, PHOTOMETRIC_SEPARATED}, opaque}};
    QList<SampleFile> files;
    for (const auto& [kind, picture] : kinds)
        files += {QString::fromLatin1(kind.name) + QStringLiteral(".tif"), tiffFile(picture, kind), picture};
    files += {QStringLiteral("premultiplied.tif"),
              tiffFile(premultiplied, {"", 8, 4, PHOTOMETRIC_RGB, SAMPLEFORMAT_UINT, PLANARCONFIG_CONTIG,
                                       COMPRESSION_NONE, 0, EXTRASAMPLE_ASSOCALPHA}),
              faint};
    return files;
}
