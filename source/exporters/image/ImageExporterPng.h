#pragma once

#include "ImageExporter.h"

/// Writes through the toolkit: png, jpg, bmp, tiff, as the file name's suffix says.
class ImageExporterPng : public ImageExporter {
public:
    QString defaultFileName() const override;

    /// Error TextureFile for a pixel format that such a file can't hold, and for a file that can't be
    /// written.
    void write(const Settings& settings, const PackedTexture& texture) override;
};
