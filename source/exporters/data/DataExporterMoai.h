#pragma once

#include "DataExporter.h"

/// A Lua chunk for Moai that returns a table, with places as fractions of the sheet.
class DataExporterMoai : public DataExporter {
public:
    explicit DataExporterMoai(const DataExporterInfo& info);

    void write() const override;
};
