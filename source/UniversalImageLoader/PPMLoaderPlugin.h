#pragma once

#include "FormatPlugin.h"

namespace QtUniversalImageLoader {

/// Netpbm's colour pictures, as numbers or as bytes. Saving needs the option "format", 0 or 1 (PPM_Format),
/// which loading reports.
class PPMLoaderPlugin : public FormatPlugin {
public:
    PPMLoaderPlugin();
    QList<ImageLoaderOption> optionList() const override;

protected:
    QImage read(QIODevice& device, const QString& path, Options& options) const override;
    bool write(QIODevice& device, const QImage& image, const QString& path,
               const Options& options) const override;
};

} // namespace QtUniversalImageLoader
