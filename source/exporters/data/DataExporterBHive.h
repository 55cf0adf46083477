#pragma once

#include "DataExporter.h"

/// JSON for BHive: close to DataExporterJSON, with frames as they lie on the sheet, and texts that aren't
/// escaped.
class DataExporterBHive : public DataExporter {
public:
    explicit DataExporterBHive(const DataExporterInfo& info);

    void write() const override;
    QString nameInFile(const PackedSprite& sprite) const override { return sprite.fullName(); }
};
