#pragma once

#include "ImageLoaderPlugin.h"

namespace QtUniversalImageLoader {

/// PVR textures: plain, in gzip and in the zlib container of the cocos2d engine.
class PVRLoaderPlugin : public ImageLoaderPlugin {
public:
    PVRLoaderPlugin();

    /// Writes version 2 into the container that the end of the path tells, in any case: ".pvr" or ".pvrtc",
    /// ".pvr.ccz", ".pvr.gz". False for any other path. `options` holds what pvr2Data() takes; it doesn't
    /// read "pixelType". "premultipliedAlpha" changes nothing, as version 2 has no place for it. No
    /// half-written file stays.
    bool save(const QString& path, const QImage& image,
              const QHash<QString, QVariant>& options) const override;

    /// `*options` is emptied.
    bool load(const QString& path, QImage* image, QString* format,
              QHash<QString, QVariant>* options) const override;

    QList<ImageLoaderOption> optionList() const override;
    bool canRead() const override { return true; }
    bool canWrite() const override { return true; }
    QMap<QString, QString> formats() const override;
};

} // namespace QtUniversalImageLoader
