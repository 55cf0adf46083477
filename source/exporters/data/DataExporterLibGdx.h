#pragma once

#include "DataExporter.h"

class QTextStream;

/// Atlases of libGDX: lines of text, sprites rotated counter-clockwise. A number behind the last underscore
/// of a name is the sprite's index, by which the framework gathers animations.
class DataExporterLibGdx : public DataExporter {
public:
    explicit DataExporterLibGdx(const DataExporterInfo& info);

    /// Throws Error (DataFile), also for a pixel format that libGDX hasn't.
    void write() const override;

    /// Name and index, which the framework looks up together: walk_01 and walk_1 are the same to it.
    QString nameInFile(const PackedSprite& sprite) const override;

private:
    void writeHead(QTextStream& stream) const;
};
