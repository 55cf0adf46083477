#include "RotateImage.h"

#include "NewImage.h"

#include <QTransform>

namespace {

/// The toolkit knows quarter turns and moves pixels then, without a filter.
QImage turned(const QImage& image, double degrees) {
    if (image.isNull())
        return {};
    const QImage result = image.transformed(QTransform().rotate(degrees));
    if (result.isNull())
        throwOutOfMemory();
    return result;
}

} // namespace

QImage rotateClockwise(const QImage& image) { return turned(image, 90); }

QImage rotateCounterClockwise(const QImage& image) { return turned(image, -90); }
