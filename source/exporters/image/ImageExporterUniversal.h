#pragma once

#include "ImageExporter.h"

/// Writes through the image file library: optimised png, tga, pkm, ppm, as the setting of the texture's
/// format says.
class ImageExporterUniversal : public ImageExporter {
public:
    QString defaultFileName() const override;

    /// Error TextureFile for any other texture format, and for a file that can't be written; errors of the
    /// library pass.
    void write(const Settings& settings, const PackedTexture& texture) override;
};
