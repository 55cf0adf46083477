#include "PSDLoaderPlugin.h"

#include "PsdReader.h"

namespace QtUniversalImageLoader {

PSDLoaderPlugin::PSDLoaderPlugin()
    : FormatPlugin({QStringLiteral("psd")}, QStringLiteral("PSD"), QStringLiteral("psd"),
                   {{QStringLiteral("psd"), QStringLiteral("Photoshop image format")}}) {}

QImage PSDLoaderPlugin::read(QIODevice& device, const QString&, Options&) const { return readPsd(device); }

bool PSDLoaderPlugin::write(QIODevice&, const QImage&, const QString&, const Options&) const { return false; }

} // namespace QtUniversalImageLoader
