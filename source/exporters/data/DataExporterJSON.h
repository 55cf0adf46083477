#pragma once

#include "DataExporter.h"

class QTextStream;

/// JSON with the sprites in an object by name, or in an array.
class DataExporterJSON : public DataExporter {
public:
    enum Variant : int {
        Hash = 0,
        Array = 1,
        Unity = 2 ///< the same text as Hash
    };

    DataExporterJSON(const DataExporterInfo& info, Variant variant);

    void write() const override;

private:
    void writeEntry(QTextStream& stream, const PackedSprite& sprite) const;
    void writeMeta(QTextStream& stream) const;

    Variant m_variant;
};
