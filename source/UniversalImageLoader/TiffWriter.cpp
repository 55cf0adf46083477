#include "TiffWriter.h"

#include "PluginImage.h"
#include "TiffDevice.h"

#include <tiffio.h>

#include <vector>

namespace {

void writeShape(TIFF* file, const QImage& image, int samples) {
    TIFFSetField(file, TIFFTAG_IMAGEWIDTH, image.width());
    TIFFSetField(file, TIFFTAG_IMAGELENGTH, image.height());
    TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, samples);
    TIFFSetField(file, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
    TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, 32);
    TIFFSetField(file, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    TIFFSetField(file, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    TIFFSetField(file, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(file, 0));
    // Only these: readers know pictures with alpha by their four samples.
    if (samples == 3)
        TIFFSetField(file, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
}

void convertRow(const QRgb* row, int width, int samples, float* to) {
    for (int x = 0; x < width; ++x) {
        const int channels[] = {qRed(row[x]), qGreen(row[x]), qBlue(row[x]), qAlpha(row[x])};
        for (int sample = 0; sample < samples; ++sample)
            *to++ = static_cast<float>(channels[sample]) / 255.0F;
    }
}

} // namespace

bool writeTiff(QIODevice& device, const QImage& image, const QString& name) {
    if (image.isNull())
        return false;
    const TiffHandle file = openTiff(device, "w");
    if (!file) {
        qDebug("Could not open '%s' for writing", qUtf8Printable(name));
        return false;
    }
    const QImage pixels = PluginImage::toPlugin(image);
    const int samples = pixels.hasAlphaChannel() ? 4 : 3;
    writeShape(file.get(), pixels, samples);
    std::vector<float> row(static_cast<std::size_t>(pixels.width()) * static_cast<std::size_t>(samples));
    for (int y = 0; y < pixels.height(); ++y) {
        convertRow(PluginImage::row(pixels, y), pixels.width(), samples, row.data());
        if (TIFFWriteScanline(file.get(), row.data(), static_cast<uint32_t>(y), 0) < 0) {
            qDebug("Error writing scanline %d", y);
            return false;
        }
    }
    return TIFFFlush(file.get()) == 1;
}
