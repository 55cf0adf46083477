#pragma once

#include "DataExporter.h"

/// Imagesets of CEGUI: XML, neither trimming nor rotation.
class DataExporterCEGUI : public DataExporter {
public:
    explicit DataExporterCEGUI(const DataExporterInfo& info);

    void write() const override;

    /// Without the suffix of the image, whatever the project says.
    QString nameInFile(const PackedSprite& sprite) const override { return sprite.trimmedName(); }
};
