#include "DataExporterCorona.h"

#include "DataFile.h"
#include "LuaText.h"

namespace {

constexpr char frameworkPage[] = "https://docs.coronalabs.com/guide/media/imageSheets/index.html";

} // namespace

DataExporterCorona::DataExporterCorona(const DataExporterInfo& info) : DataExporter(info) {}

void DataExporterCorona::write() const {
    DataFile file(fileName(), QStringLiteral("Failed to write lua file %1"));
    QTextStream& stream = file.text();
    stream << "-- This file is for use with Corona Game Edition\n"
           << "-- \n"
           << "-- The function getSpriteSheetData() returns a table suitable for importing using "
              "sprite.newSpriteSheetFromData()\n"
           << "-- \n";
    LuaText::writeOrigin(stream, smartUpdateKey());
    stream << "-- Usage example:\n"
           << "--        local sheetData = require \"ThisFile.lua\"\n"
           << "--        local data = sheetData.getSpriteSheetData()\n"
           << "--        local spriteSheet = sprite.newSpriteSheetFromData( \"Untitled.png\", data )\n"
           << "-- \n"
           << "-- For more details, see " << frameworkPage << "\n\n"
           << "local SpriteSheet = {}\n"
           << "SpriteSheet.getSpriteSheetData = function ()\n"
           << "\treturn {\n"
           << "\t\tframes = {\n";
    // The format has no rotation of its own; a sprite that lies rotated, as the user forced it, says so.
    for (const PackedSprite& sprite : sortedSprites()) {
        const QString rect = LuaText::rect(sprite.frameRectWithoutRotation());
        LuaText::writeSprite(stream, nameInFile(sprite), QStringLiteral("textureRect = {%1}").arg(rect),
                             sprite);
    }
    stream << "\t\t}\n"
           << "\t}\n"
           << "end\n"
           << "return SpriteSheet\n\n";
    file.commit();
}
