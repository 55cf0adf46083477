#include "DataExporterJSON.h"

#include "DataFile.h"
#include "DataText.h"
#include "JsonText.h"
#include "Settings.h"

DataExporterJSON::DataExporterJSON(const DataExporterInfo& info, Variant variant)
    : DataExporter(info), m_variant(variant) {}

void DataExporterJSON::write() const {
    DataFile file(fileName(), QStringLiteral("Failed to write json file %1"));
    QTextStream& stream = file.text();
    stream << "{\"frames\": " << (m_variant == Array ? '[' : '{') << "\n\n";
    JsonText::writeEntries(stream, sortedSprites(),
                           [&](const PackedSprite& sprite) { writeEntry(stream, sprite); });
    stream << (m_variant == Array ? ']' : '}') << ",\n";
    writeMeta(stream);
    file.commit();
}

void DataExporterJSON::writeEntry(QTextStream& stream, const PackedSprite& sprite) const {
    const QString name = JsonText::escaped(nameInFile(sprite));
    if (m_variant == Array)
        stream << "{\n\t\"filename\": \"" << name << "\",\n";
    else
        stream << '"' << name << "\":\n{\n";
    stream << "\t\"frame\": " << JsonText::rect(sprite.frameRectWithoutRotation()) << ",\n"
           << "\t\"rotated\": " << DataText::boolean(sprite.rotated()) << ",\n"
           << "\t\"trimmed\": " << DataText::boolean(sprite.trimmed()) << ",\n"
           << "\t\"spriteSourceSize\": " << JsonText::rect(sprite.sourceRect()) << ",\n"
           << "\t\"sourceSize\": " << JsonText::size(sprite.untrimmedSize()) << "\n}";
}

void DataExporterJSON::writeMeta(QTextStream& stream) const {
    JsonText::writeMetaHead(stream, *this, JsonText::escaped(textureFilePath()));
    stream << "\t\"scale\": \"" << settings()->globalSpriteSettings()->scale() << "\",\n"
           << "\t\"smartupdate\": \"" << smartUpdateKey() << "\"\n"
           << "}\n}\n";
}
