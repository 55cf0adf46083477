#pragma once

#include "DataExporter.h"

/// A Lua module for the Corona SDK, whose function returns the table of sprites.
class DataExporterCorona : public DataExporter {
public:
    explicit DataExporterCorona(const DataExporterInfo& info);

    void write() const override;
};
