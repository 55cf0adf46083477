#include "DataExporterSlick2D.h"

#include "DataFile.h"

DataExporterSlick2D::DataExporterSlick2D(const DataExporterInfo& info) : DataExporter(info) {}

void DataExporterSlick2D::write() const {
    // The sentence names another format; it is the one that users know.
    DataFile file(fileName(), QStringLiteral("Failed to write agk file %1"));
    QTextStream& stream = file.text();
    stream << textureName() << '\n';
    for (const PackedSprite& sprite : sortedSprites()) {
        const QRect rect = sprite.frameRectWithoutRotation();
        stream << "{\n\t" << nameInFile(sprite) << "\n\t" << rect.x() << "\n\t" << rect.y() << "\n\t"
               << rect.width() << "\n\t" << rect.height() << "\n\t0\n\t0\n\t0\n\t0\n}\n";
    }
    file.commit();
}
