#include "PKMLoaderPlugin.h"

#include "PkmFormat.h"
#include "PluginImage.h"

namespace QtUniversalImageLoader {

PKMLoaderPlugin::PKMLoaderPlugin()
    : ImageLoaderPlugin({QStringLiteral("pkm")}, QStringLiteral("PKM"), true) {}

bool PKMLoaderPlugin::save(const QString& path, const QImage& image, const QHash<QString, QVariant>&) const {
    return PluginImage::save(path, [&](QIODevice& device) { return writePkm(device, image); });
}

bool PKMLoaderPlugin::load(const QString& path, QImage* image, QString* format,
                           QHash<QString, QVariant>*) const {
    if (!PluginImage::load(path, image, readPkm))
        return false;
    if (format)
        *format = QStringLiteral("pkm");
    return true;
}

QMap<QString, QString> PKMLoaderPlugin::formats() const {
    return {{QStringLiteral("pkm"), QStringLiteral("PKM file format (etc1)")}};
}

} // namespace QtUniversalImageLoader
