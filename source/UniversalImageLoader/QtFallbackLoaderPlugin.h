#pragma once

#include "ImageLoaderPlugin.h"

namespace QtUniversalImageLoader {

/// What the toolkit itself, with its own plug-ins, reads and writes, as far as nothing before it in the table
/// does both.
class QtFallbackLoaderPlugin : public ImageLoaderPlugin {
public:
    /// `loader` holds the plug-ins that come first.
    explicit QtFallbackLoaderPlugin(const ImageLoader& loader);

    /// Format by the file's name, by the caller's choice where the name tells none; default quality. No
    /// half-written file stays.
    bool save(const QString& path, const QImage& image,
              const QHash<QString, QVariant>& options) const override;

    /// `*format` receives the path's extension, in its own case. `*options` stays untouched.
    bool load(const QString& path, QImage* image, QString* format,
              QHash<QString, QVariant>* options) const override;

    QList<ImageLoaderOption> optionList() const override { return {}; }
    bool canRead() const override { return true; }
    bool canWrite() const override { return true; }
    QMap<QString, QString> formats() const override;
};

} // namespace QtUniversalImageLoader
