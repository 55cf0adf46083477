#include "DataExporterBHive.h"

#include "DataFile.h"
#include "JsonText.h"
#include "Settings.h"

namespace {

void writeEntry(QTextStream& stream, const PackedSprite& sprite) {
    stream << '"' << sprite.fullName() << "\":\n{\n"
           << "\t\"frame\": " << JsonText::rect(sprite.frameRect()) << ",\n";
    if (sprite.trimmed())
        stream << "\t\"trimmed\": true,\n";
    if (sprite.rotated())
        stream << "\t\"rotated\": true,\n";
    stream << "\t\"offset\": " << JsonText::point(sprite.sourceRect().topLeft()) << ",\n"
           << "\t\"sourceSize\": " << JsonText::size(sprite.untrimmedSize()) << "\n}";
}

} // namespace

DataExporterBHive::DataExporterBHive(const DataExporterInfo& info) : DataExporter(info) {}

void DataExporterBHive::write() const {
    DataFile file(fileName(), QStringLiteral("Failed to write json file %1"));
    QTextStream& stream = file.text();
    stream << "{\"frames\": {\n\n";
    JsonText::writeEntries(stream, sortedSprites(),
                           [&](const PackedSprite& sprite) { writeEntry(stream, sprite); });
    stream << "},\n";
    JsonText::writeMetaHead(stream, *this, textureFilePath());
    stream << "\t\"scale\": \"" << settings()->globalSpriteSettings()->scale() << "\"\n}\n}\n";
    file.commit();
}
