#include "TIFFLoaderPlugin.h"

#include "TiffReader.h"
#include "TiffWriter.h"

namespace QtUniversalImageLoader {

TIFFLoaderPlugin::TIFFLoaderPlugin()
    : FormatPlugin({QStringLiteral("tiff"), QStringLiteral("tif")}, QStringLiteral("TIFF"),
                   QStringLiteral("tiff"),
                   {{QStringLiteral("tif"), QStringLiteral("Tagged Image File Format")},
                    {QStringLiteral("tiff"), QStringLiteral("Tagged Image File Format")}}) {}

QImage TIFFLoaderPlugin::read(QIODevice& device, const QString& path, Options&) const {
    return readTiff(device, path);
}

bool TIFFLoaderPlugin::write(QIODevice& device, const QImage& image, const QString& path,
                             const Options&) const {
    return writeTiff(device, image, path);
}

void TIFFLoaderPlugin::logUnopened(const QString& path, bool toWrite) const {
    if (toWrite)
        qDebug("Could not open '%s' for writing", qUtf8Printable(path));
    else
        qDebug("Can't open '%s' for reading", qUtf8Printable(path));
}

} // namespace QtUniversalImageLoader
