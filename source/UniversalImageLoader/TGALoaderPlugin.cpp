#include "TGALoaderPlugin.h"

#include "PluginImage.h"
#include "TgaFormat.h"

namespace QtUniversalImageLoader {

TGALoaderPlugin::TGALoaderPlugin()
    : ImageLoaderPlugin({QStringLiteral("tga")}, QStringLiteral("TGA"), true) {}

bool TGALoaderPlugin::save(const QString& path, const QImage& image, const QHash<QString, QVariant>&) const {
    return PluginImage::save(path, [&](QIODevice& device) { return writeTga(device, image); });
}

bool TGALoaderPlugin::load(const QString& path, QImage* image, QString* format,
                           QHash<QString, QVariant>* options) const {
    if (!PluginImage::load(path, image, readTga))
        return false;
    if (format)
        *format = QStringLiteral("tga");
    if (options)
        options->clear();
    return true;
}

QMap<QString, QString> TGALoaderPlugin::formats() const {
    return {{QStringLiteral("tga"), QStringLiteral("Targa image format")}};
}

} // namespace QtUniversalImageLoader
