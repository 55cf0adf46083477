#pragma once

#include "FormatPlugin.h"

namespace QtUniversalImageLoader {

/// Targa files. Loading empties the options.
class TGALoaderPlugin : public FormatPlugin {
public:
    TGALoaderPlugin();

protected:
    QImage read(QIODevice& device, const QString& path, Options& options) const override;
    bool write(QIODevice& device, const QImage& image, const QString& path,
               const Options& options) const override;
};

} // namespace QtUniversalImageLoader
