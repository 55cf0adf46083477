#include "NewImage.h"

#include "Error.h"

#include <algorithm>
#include <limits>

namespace {

QImage checked(const QImage& image) {
    if (image.isNull())
        throwOutOfMemory();
    return image;
}

} // namespace

void throwOutOfMemory() { throw Error(Error::OutOfMemory, QStringLiteral("Out of memory")); }

QImage newImage(qint64 width, qint64 height, QImage::Format format) {
    if (std::max(width, height) > std::numeric_limits<int>::max())
        return checked({});
    return checked(QImage(static_cast<int>(width), static_cast<int>(height), format));
}

QImage toArgb32(const QImage& image) {
    return image.isNull() ? image : checked(image.convertToFormat(QImage::Format_ARGB32));
}
