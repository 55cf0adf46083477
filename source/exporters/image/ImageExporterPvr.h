#pragma once

#include "ImageExporter.h"

/// Writes PVR files through the image file library. The container (plain, gz, ccz) follows from the file
/// name.
class ImageExporterPvr : public ImageExporter {
public:
    QString defaultFileName() const override;

    /// Error PvrLimit for a pixel format or a size that a PVR file can't hold, TextureFile for a file that
    /// can't be written; errors of the library pass.
    void write(const Settings& settings, const PackedTexture& texture) override;
};
