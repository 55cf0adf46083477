#include "ColorReduction.h"

#include "DrawOver.h"
#include "NewImage.h"

#include <algorithm>

namespace {

/// A new image whose pixels are those of the old one as `change` turns them.
template <class Change>
QImage changed(const QImage& image, Change change) {
    if (image.isNull())
        return {};
    const QImage source = toArgb32(image);
    QImage result = newImage(source.size());
    for (int y = 0; y < result.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(source.constScanLine(y));
        std::transform(from, from + result.width(), reinterpret_cast<QRgb*>(result.scanLine(y)), change);
    }
    return result;
}

/// Rounded product with alpha / 255. Halves can't occur, as 255 is odd.
int premultiplied(int channel, int alpha) { return (channel * alpha + 127) / 255; }

QRgb premultipliedPixel(QRgb pixel) {
    const int alpha = qAlpha(pixel);
    return qRgba(premultiplied(qRed(pixel), alpha), premultiplied(qGreen(pixel), alpha),
                 premultiplied(qBlue(pixel), alpha), alpha);
}

QImage flattened(const QImage& image, const QColor& background) {
    QImage result = newImage(image.size());
    result.fill(background.rgb());
    drawOver(image, result);
    return result;
}

QImage dithered(const QImage& image, PixelFormatCode code, SettingsBase::DitherType type, bool premultiply) {
    using Dither = SettingsBase::DitherType;
    switch (type) {
    case Dither::NearestNeighbour:
        return quantizeImage(image, code, premultiply, ReductionRule::Nearest);
    case Dither::Linear:
        return quantizeImage(image, code, premultiply, ReductionRule::Linear);
    case Dither::FloydSteinberg:
        return diffuseErrors(DiffusionMethod::FloydSteinberg, image, code, false, premultiply);
    case Dither::FloydSteinbergAlpha:
        return diffuseErrors(DiffusionMethod::FloydSteinbergAlpha, image, code, true, premultiply);
    case Dither::Atkinson:
        return diffuseErrors(DiffusionMethod::Atkinson, image, code, false, premultiply);
    case Dither::AtkinsonAlpha:
        return diffuseErrors(DiffusionMethod::AtkinsonAlpha, image, code, true, premultiply);
    }
    return image;
}

} // namespace

QImage reduceColors(const QImage& image, SettingsBase::OutputFormat format, const QColor& background,
                    SettingsBase::DitherType ditherType, bool premultiply) {
    using Format = SettingsBase::OutputFormat;
    if (image.isNull())
        return {};
    switch (format) {
    case Format::RGB565:
        return dithered(flattened(image, background), pixelFormatCode(format), ditherType, premultiply);
    case Format::RGBA4444:
    case Format::RGBA5551:
    case Format::RGBA5555:
        return dithered(image, pixelFormatCode(format), ditherType, premultiply);
    case Format::RGB888: {
        const QImage flat = flattened(image, background);
        return premultiply ? premultiplyImage(flat) : flat;
    }
    case Format::ALPHA:
        return alphaToGrey(image);
    case Format::ALPHA_INTENSITY:
        return rgbToIntensity(image);
    default:
        return premultiply ? premultiplyImage(image) : image;
    }
}

QImage quantizeImage(const QImage& image, PixelFormatCode code, bool premultiply, ReductionRule rule) {
    const ChannelTables tables = channelTables(code, rule);
    if (premultiply)
        return changed(image, [&](QRgb pixel) { return tables.reduced(premultipliedPixel(pixel)); });
    return changed(image, [&](QRgb pixel) { return tables.reduced(pixel); });
}

QImage premultiplyImage(const QImage& image) { return changed(image, premultipliedPixel); }

QImage alphaToGrey(const QImage& image) {
    return changed(image, [](QRgb pixel) { return 0xFF000000 + qAlpha(pixel) * 0x010101U; });
}

QImage rgbToIntensity(const QImage& image) {
    return changed(image, [](QRgb pixel) {
        // A third never falls on a half, so this is the rounded mean.
        const int grey = (qRed(pixel) + qGreen(pixel) + qBlue(pixel) + 1) / 3;
        return qRgba(grey, grey, grey, qAlpha(pixel));
    });
}
