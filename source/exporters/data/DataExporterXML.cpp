#include "DataExporterXML.h"

#include "XmlDataFile.h"

namespace {

QString legend() {
    return QStringLiteral("Format:\n"
                          "n  => name of the sprite\n"
                          "x  => sprite x pos in texture\n"
                          "y  => sprite y pos in texture\n"
                          "w  => sprite width (may be trimmed)\n"
                          "h  => sprite height (may be trimmed)\n"
                          "oX => sprite's x-corner offset (only available if trimmed)\n"
                          "oY => sprite's y-corner offset (only available if trimmed)\n"
                          "oW => sprite's original width (only available if trimmed)\n"
                          "oH => sprite's original height (only available if trimmed)\n"
                          "r => 'y' only set if sprite is rotated\n");
}

void writeSprite(XmlDataFile& file, const QString& name, const PackedSprite& sprite) {
    file.xml().writeEmptyElement(QStringLiteral("sprite"));
    file.xml().writeAttribute(QStringLiteral("n"), name);
    file.writePoint(QStringLiteral("x"), QStringLiteral("y"), sprite.frameRect().topLeft());
    file.writeSize(QStringLiteral("w"), QStringLiteral("h"), sprite.frameRect().size());
    if (sprite.trimmed()) {
        file.writePoint(QStringLiteral("oX"), QStringLiteral("oY"), sprite.cornerOffset());
        file.writeSize(QStringLiteral("oW"), QStringLiteral("oH"), sprite.untrimmedSize());
    }
    if (sprite.rotated())
        file.xml().writeAttribute(QStringLiteral("r"), QStringLiteral("y"));
}

} // namespace

DataExporterXML::DataExporterXML(const DataExporterInfo& info) : DataExporter(info) {}

void DataExporterXML::write() const {
    XmlDataFile file(fileName());
    file.xml().writeStartDocument();
    file.writeOrigin(smartUpdateKey());
    file.xml().writeComment(legend());
    file.xml().writeStartElement(QStringLiteral("TextureAtlas"));
    file.xml().writeAttribute(QStringLiteral("imagePath"), textureName());
    file.writeSize(QStringLiteral("width"), QStringLiteral("height"), texture().size());
    for (const PackedSprite& sprite : sortedSprites())
        writeSprite(file, nameInFile(sprite), sprite);
    file.writeEnd();
    file.commit();
}
