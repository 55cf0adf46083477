#pragma once

#include "DataExporter.h"

/// Plain XML that explains itself in a comment, with attributes only where they tell something.
class DataExporterXML : public DataExporter {
public:
    explicit DataExporterXML(const DataExporterInfo& info);

    void write() const override;
};
