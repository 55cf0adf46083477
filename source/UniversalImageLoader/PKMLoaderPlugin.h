#pragma once

#include "FormatPlugin.h"

namespace QtUniversalImageLoader {

/// ETC1 in PKM files. Alpha is lost.
class PKMLoaderPlugin : public FormatPlugin {
public:
    PKMLoaderPlugin();

protected:
    QImage read(QIODevice& device, const QString& path, Options& options) const override;
    bool write(QIODevice& device, const QImage& image, const QString& path,
               const Options& options) const override;
};

} // namespace QtUniversalImageLoader
