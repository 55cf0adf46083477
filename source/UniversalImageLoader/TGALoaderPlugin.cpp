#include "TGALoaderPlugin.h"

#include "TgaFormat.h"

namespace QtUniversalImageLoader {

TGALoaderPlugin::TGALoaderPlugin()
    : FormatPlugin({QStringLiteral("tga")}, QStringLiteral("TGA"), QStringLiteral("tga"),
                   {{QStringLiteral("tga"), QStringLiteral("Targa image format")}}) {}

QImage TGALoaderPlugin::read(QIODevice& device, const QString&, Options& options) const {
    options.clear();
    return readTga(device);
}

bool TGALoaderPlugin::write(QIODevice& device, const QImage& image, const QString&, const Options&) const {
    return writeTga(device, image);
}

} // namespace QtUniversalImageLoader
