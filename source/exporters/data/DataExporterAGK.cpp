#include "DataExporterAGK.h"

#include "DataFile.h"

DataExporterAGK::DataExporterAGK(const DataExporterInfo& info) : DataExporter(info) {}

void DataExporterAGK::write() const {
    DataFile file(fileName(), QStringLiteral("Failed to write agk file %1"));
    for (const PackedSprite& sprite : sortedSprites()) {
        const QRect rect = sprite.frameRect();
        file.text() << nameInFile(sprite) << ':' << rect.x() << ':' << rect.y() << ':' << rect.width() << ':'
                    << rect.height() << '\n';
    }
    file.commit();
}
