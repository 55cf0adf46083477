#pragma once

#include "DataExporter.h"

/// Texture packs of Gideros: one line a sprite, with the margins that trimming took away.
class DataExporterGideros : public DataExporter {
public:
    explicit DataExporterGideros(const DataExporterInfo& info);

    void write() const override;

    /// Without slashes, which the framework takes for folders.
    QString nameInFile(const PackedSprite& sprite) const override;
};
