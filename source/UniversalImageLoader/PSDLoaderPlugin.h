#pragma once

#include "ImageLoaderPlugin.h"

namespace QtUniversalImageLoader {

/// The merged pictures of Photoshop files; read only.
class PSDLoaderPlugin : public ImageLoaderPlugin {
public:
    PSDLoaderPlugin();

    /// False.
    bool save(const QString& path, const QImage& image,
              const QHash<QString, QVariant>& options) const override;

    /// `*options` stays untouched.
    bool load(const QString& path, QImage* image, QString* format,
              QHash<QString, QVariant>* options) const override;

    QList<ImageLoaderOption> optionList() const override { return {}; }
    bool canRead() const override { return true; }
    bool canWrite() const override { return false; }
    QMap<QString, QString> formats() const override;
};

} // namespace QtUniversalImageLoader
