#include "PluginImage.h"

#include "ImageLimits.h"
#include "OutputFile.h"

#include <QFile>

namespace PluginImage {

QImage allocate(qint64 width, qint64 height, QImage::Format format) {
    if (width < 1 || height < 1 || !ImageLimits::accept(width, height))
        return {};
    return QImage(static_cast<int>(width), static_cast<int>(height), format);
}

QImage toPlugin(const QImage& image) {
    return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_ARGB32 : QImage::Format_RGB32);
}

bool load(const QString& path, QImage* image, const std::function<QImage(QIODevice&)>& read) {
    QFile file(path);
    if (!image || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return false;
    *image = read(file);
    return !image->isNull();
}

bool save(const QString& path, const std::function<bool(QIODevice&)>& write) {
    OutputFile file(path);
    return file.open() && write(file.device()) && file.commit();
}

bool writeAll(QIODevice& device, const QByteArray& bytes) { return device.write(bytes) == bytes.size(); }

} // namespace PluginImage
