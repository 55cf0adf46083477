#include "PKMLoaderPlugin.h"

#include "PkmFormat.h"

namespace QtUniversalImageLoader {

PKMLoaderPlugin::PKMLoaderPlugin()
    : FormatPlugin({QStringLiteral("pkm")}, QStringLiteral("PKM"), QStringLiteral("pkm"),
                   {{QStringLiteral("pkm"), QStringLiteral("PKM file format (etc1)")}}) {}

QImage PKMLoaderPlugin::read(QIODevice& device, const QString&, Options&) const { return readPkm(device); }

bool PKMLoaderPlugin::write(QIODevice& device, const QImage& image, const QString&, const Options&) const {
    return writePkm(device, image);
}

} // namespace QtUniversalImageLoader
