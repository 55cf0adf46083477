#include "PSDLoaderPlugin.h"

#include "PluginImage.h"
#include "PsdReader.h"

namespace QtUniversalImageLoader {

PSDLoaderPlugin::PSDLoaderPlugin()
    : ImageLoaderPlugin({QStringLiteral("psd")}, QStringLiteral("PSD"), true) {}

bool PSDLoaderPlugin::save(const QString&, const QImage&, const QHash<QString, QVariant>&) const {
    return false;
}

bool PSDLoaderPlugin::load(const QString& path, QImage* image, QString* format,
                           QHash<QString, QVariant>*) const {
    if (!PluginImage::load(path, image, readPsd))
        return false;
    if (format)
        *format = QStringLiteral("psd");
    return true;
}

QMap<QString, QString> PSDLoaderPlugin::formats() const {
    return {{QStringLiteral("psd"), QStringLiteral("Photoshop image format")}};
}

} // namespace QtUniversalImageLoader
