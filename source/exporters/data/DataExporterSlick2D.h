#pragma once

#include "DataExporter.h"

/// Sheet definitions of Slick2D: a list of bare numbers, neither trimming nor rotation.
class DataExporterSlick2D : public DataExporter {
public:
    explicit DataExporterSlick2D(const DataExporterInfo& info);

    void write() const override;
};
