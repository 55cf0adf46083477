#include "PluginImage.h"

#include "ImageLimits.h"

namespace PluginImage {

QImage allocate(qint64 width, qint64 height, QImage::Format format) {
    if (width < 1 || height < 1 || !ImageLimits::accept(width, height))
        return {};
    return QImage(static_cast<int>(width), static_cast<int>(height), format);
}

QImage toPlugin(const QImage& image) {
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
}

bool writeAll(QIODevice& device, const QByteArray& bytes) { return device.write(bytes) == bytes.size(); }

} // namespace PluginImage
