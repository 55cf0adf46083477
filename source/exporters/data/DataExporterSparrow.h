#pragma once

#include "DataExporter.h"

/// Texture atlases of Sparrow and Starling: XML, no rotation.
class DataExporterSparrow : public DataExporter {
public:
    explicit DataExporterSparrow(const DataExporterInfo& info);

    void write() const override;

    /// Without the suffix of the image, whatever the project says.
    QString nameInFile(const PackedSprite& sprite) const override { return sprite.trimmedName(); }
};
