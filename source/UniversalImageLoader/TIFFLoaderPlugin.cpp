#include "TIFFLoaderPlugin.h"

#include "PluginImage.h"
#include "TiffReader.h"
#include "TiffWriter.h"

namespace QtUniversalImageLoader {

TIFFLoaderPlugin::TIFFLoaderPlugin()
    : ImageLoaderPlugin({QStringLiteral("tiff"), QStringLiteral("tif")}, QStringLiteral("TIFF"), true) {}

bool TIFFLoaderPlugin::save(const QString& path, const QImage& image, const QHash<QString, QVariant>&) const {
    bool opened = false;
    const bool written = PluginImage::save(path, [&](QIODevice& device) {
        opened = true;
        return writeTiff(device, image, path);
    });
    if (!opened)
        qDebug("Could not open '%s' for writing", qUtf8Printable(path));
    return written;
}

bool TIFFLoaderPlugin::load(const QString& path, QImage* image, QString* format,
                            QHash<QString, QVariant>*) const {
    bool opened = false;
    const bool read = PluginImage::load(path, image, [&](QIODevice& device) {
        opened = true;
        return readTiff(device, path);
    });
    if (image && !opened)
        qDebug("Can't open '%s' for reading", qUtf8Printable(path));
    if (read && format)
        *format = QStringLiteral("tiff");
    return read;
}

QMap<QString, QString> TIFFLoaderPlugin::formats() const {
    return {{QStringLiteral("tif"), QStringLiteral("Tagged Image File Format")},
            {QStringLiteral("tiff"), QStringLiteral("Tagged Image File Format")}};
}

} // namespace QtUniversalImageLoader
