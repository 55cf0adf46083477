#include "DataExporterSparrow.h"

#include "XmlDataFile.h"

namespace {

void writeSprite(XmlDataFile& file, const QString& name, const PackedSprite& sprite) {
    file.xml().writeEmptyElement(QStringLiteral("SubTexture"));
    file.xml().writeAttribute(QStringLiteral("name"), name);
    file.writePoint(QStringLiteral("x"), QStringLiteral("y"), sprite.frameRect().topLeft());
    file.writeSize(QStringLiteral("width"), QStringLiteral("height"),
                   sprite.frameRectWithoutRotation().size());
    if (sprite.trimmed()) {
        // The frame's place as seen from the kept pixels, hence the sign.
        file.writePoint(QStringLiteral("frameX"), QStringLiteral("frameY"), -sprite.cornerOffset());
        file.writeSize(QStringLiteral("frameWidth"), QStringLiteral("frameHeight"), sprite.untrimmedSize());
    }
}

} // namespace

DataExporterSparrow::DataExporterSparrow(const DataExporterInfo& info) : DataExporter(info) {}

void DataExporterSparrow::write() const {
    XmlDataFile file(fileName());
    file.xml().writeStartDocument();
    file.writeOrigin(smartUpdateKey());
    file.xml().writeStartElement(QStringLiteral("TextureAtlas"));
    file.xml().writeAttribute(QStringLiteral("imagePath"), textureName());
    for (const PackedSprite& sprite : sortedSprites())
        writeSprite(file, nameInFile(sprite), sprite);
    file.writeEnd();
    file.commit();
}
