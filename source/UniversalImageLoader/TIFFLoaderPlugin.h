#pragma once

#include "ImageLoaderPlugin.h"

namespace QtUniversalImageLoader {

/// TIFF files; written as floats.
class TIFFLoaderPlugin : public ImageLoaderPlugin {
public:
    TIFFLoaderPlugin();

    /// No half-written file stays.
    bool save(const QString& path, const QImage& image,
              const QHash<QString, QVariant>& options) const override;

    /// `*options` stays untouched.
    bool load(const QString& path, QImage* image, QString* format,
              QHash<QString, QVariant>* options) const override;

    QList<ImageLoaderOption> optionList() const override { return {}; }
    bool canRead() const override { return true; }
    bool canWrite() const override { return true; }
    QMap<QString, QString> formats() const override;
};

} // namespace QtUniversalImageLoader
