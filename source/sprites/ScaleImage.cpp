#include "ScaleImage.h"

#include "Error.h"
#include "Hqx.h"
#include "NeighbourFilters.h"
#include "NewImage.h"

#include <cmath>

namespace {

/// Rounds to the nearest integer, halves away from zero. The product is one of single precision on purpose:
/// the sizes that stand in published data files were computed that way.
double scaledSide(int side, double scale) {
    return std::round(static_cast<float>(side) * static_cast<float>(scale));
}

QSize scaledSize(const QSize& size, double scale) {
    const double width = scaledSide(size.width(), scale);
    const double height = scaledSide(size.height(), scale);
    // Written so that a product that is no number is refused too.
    if (!(width * height <= static_cast<double>(maxScaledPixels)))
        throw Error(Error::ScaledSprite, QStringLiteral("Scaled sprite exceeds maximum texture size"));
    return {static_cast<int>(width), static_cast<int>(height)};
}

QImage resize(const QImage& image, const QSize& size, Qt::TransformationMode mode) {
    if (size.isEmpty())
        return {};
    const QImage resized = image.scaled(size, Qt::IgnoreAspectRatio, mode);
    if (resized.isNull())
        throwOutOfMemory();
    return resized;
}

QImage filter(const QImage& image, const QSize& target, ScaleMode mode) {
    switch (mode) {
    case ScaleMode::Smooth:
        return resize(image, target, Qt::SmoothTransformation);
    case ScaleMode::Fast:
        return resize(image, target, Qt::FastTransformation);
    case ScaleMode::Scale2x:
        return scale2x(image);
    case ScaleMode::Scale3x:
        return scale3x(image);
    case ScaleMode::Scale4x:
        return scale2x(scale2x(image));
    case ScaleMode::Eagle:
        return eagle(image);
    case ScaleMode::Hq2x:
        return hq2x(image);
    }
    return {};
}

} // namespace

QImage scaleImage(const QImage& image, double scale, ScaleMode mode) {
    const bool resizes = mode == ScaleMode::Smooth || mode == ScaleMode::Fast;
    if (image.isNull() || (scale == 1.0 && resizes))
        return image;
    const QSize target = scaledSize(image.size(), scale);
    const QImage source = resizes ? image : toArgb32(image);
    return toArgb32(filter(source, target, mode));
}
