#pragma once

#include "DataExporter.h"

/// Sub image lists of AppGameKit: one line a sprite, neither trimming nor rotation.
class DataExporterAGK : public DataExporter {
public:
    explicit DataExporterAGK(const DataExporterInfo& info);

    void write() const override;
};
