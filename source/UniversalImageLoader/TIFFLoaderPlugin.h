#pragma once

#include "FormatPlugin.h"

namespace QtUniversalImageLoader {

/// TIFF files; written as floats.
class TIFFLoaderPlugin : public FormatPlugin {
public:
    TIFFLoaderPlugin();

protected:
    QImage read(QIODevice& device, const QString& path, Options& options) const override;
    bool write(QIODevice& device, const QImage& image, const QString& path,
               const Options& options) const override;
    void logUnopened(const QString& path, bool toWrite) const override;
};

} // namespace QtUniversalImageLoader
