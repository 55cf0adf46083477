#pragma once

#include "FormatPlugin.h"

namespace QtUniversalImageLoader {

/// PVR textures: plain, in gzip and in the zlib container of the cocos2d engine, as the end of the path
/// tells, in any case: ".pvr" or ".pvrtc", ".pvr.gz", ".pvr.ccz"; no other path is read or written. Writes
/// version 2 and takes the options of pvr2Data(); "pixelType" isn't read, and "premultipliedAlpha" changes
/// nothing, as version 2 has no place for it. Loading empties the options.
class PVRLoaderPlugin : public FormatPlugin {
public:
    PVRLoaderPlugin();
    QList<ImageLoaderOption> optionList() const override;

protected:
    QImage read(QIODevice& device, const QString& path, Options& options) const override;
    bool write(QIODevice& device, const QImage& image, const QString& path,
               const Options& options) const override;
};

} // namespace QtUniversalImageLoader
