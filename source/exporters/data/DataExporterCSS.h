#pragma once

#include "DataExporter.h"

/// A style sheet with a class for each sprite, or a pseudo-class of one ("button-hover" is .button:hover).
/// Neither trimming nor rotation.
class DataExporterCSS : public DataExporter {
public:
    explicit DataExporterCSS(const DataExporterInfo& info);

    void write() const override;

    /// The selector without its dot.
    QString nameInFile(const PackedSprite& sprite) const override;
};
