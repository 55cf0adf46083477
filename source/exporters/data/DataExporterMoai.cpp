#include "DataExporterMoai.h"

#include "DataFile.h"
#include "LuaText.h"

namespace {

QString uvRect(const QRect& rect, QSize sheet) {
    const double width = sheet.width();
    const double height = sheet.height();
    return QStringLiteral(" u0 = %1, v0 = %2, u1 = %3, v1 = %4 ")
        .arg(rect.left() / width)
        .arg(rect.top() / height)
        .arg((rect.right() + 1) / width)
        .arg((rect.bottom() + 1) / height);
}

} // namespace

DataExporterMoai::DataExporterMoai(const DataExporterInfo& info) : DataExporter(info) {}

void DataExporterMoai::write() const {
    DataFile file(fileName(), QStringLiteral("Failed to write lua file %1"));
    QTextStream& stream = file.text();
    stream << "-- This file is for use with Moai SDK\n"
           << "-- \n";
    LuaText::writeOrigin(stream, smartUpdateKey());
    stream << "\nreturn {\n"
           << "\ttexture = '" << textureFilePath() << "',\n"
           << "\tframes = {\n";
    for (const PackedSprite& sprite : sortedSprites()) {
        const QString uv = uvRect(sprite.frameRect(), texture().size());
        LuaText::writeSprite(stream, nameInFile(sprite), QStringLiteral("uvRect = {%1}").arg(uv), sprite);
    }
    stream << "\t\t}\n"
           << "\t}\n\n";
    file.commit();
}
