#pragma once

#include "ImageLoaderPlugin.h"

namespace QtUniversalImageLoader {

/// Netpbm's colour pictures, as numbers or as bytes.
class PPMLoaderPlugin : public ImageLoaderPlugin {
public:
    PPMLoaderPlugin();

    /// `options` has to hold "format", 0 or 1 (PPM_Format). No half-written file stays.
    bool save(const QString& path, const QImage& image,
              const QHash<QString, QVariant>& options) const override;

    /// `*options` receives "format", a PPM_Format.
    bool load(const QString& path, QImage* image, QString* format,
              QHash<QString, QVariant>* options) const override;

    QList<ImageLoaderOption> optionList() const override;
    bool canRead() const override { return true; }
    bool canWrite() const override { return true; }
    QMap<QString, QString> formats() const override;
};

} // namespace QtUniversalImageLoader
