#pragma once

#include "ImageLoaderPlugin.h"

namespace QtUniversalImageLoader {

/// Writes optimised PNG files; reading them is the toolkit's.
class PNGLoaderPlugin : public ImageLoaderPlugin {
public:
    PNGLoaderPlugin();

    /// `path` has to end in ".png" in this case. Throws Error (code 12) with the optimiser's text, and the
    /// optimiser's IncorrectRange for a number above 9 or a range of filters that ends before it begins.
    /// Nothing half-written stays.
    bool save(const QString& path, const QImage& image,
              const QHash<QString, QVariant>& options) const override;

    /// False.
    bool load(const QString& path, QImage* image, QString* format,
              QHash<QString, QVariant>* options) const override;

    QList<ImageLoaderOption> optionList() const override;
    bool canRead() const override { return false; }
    bool canWrite() const override { return true; }
    QMap<QString, QString> formats() const override;
};

} // namespace QtUniversalImageLoader
