#pragma once

#include "FormatPlugin.h"

namespace QtUniversalImageLoader {

/// The merged pictures of Photoshop files; read only.
class PSDLoaderPlugin : public FormatPlugin {
public:
    PSDLoaderPlugin();
    bool canWrite() const override { return false; }

protected:
    QImage read(QIODevice& device, const QString& path, Options& options) const override;
    bool write(QIODevice& device, const QImage& image, const QString& path,
               const Options& options) const override;
};

} // namespace QtUniversalImageLoader
