#include "DataExporterCEGUI.h"

#include "Settings.h"
#include "XmlDataFile.h"

#include <QFileInfo>

namespace {

void writeSprite(XmlDataFile& file, const QString& name, const PackedSprite& sprite) {
    file.xml().writeEmptyElement(QStringLiteral("Image"));
    file.xml().writeAttribute(QStringLiteral("Name"), name);
    file.writePoint(QStringLiteral("XPos"), QStringLiteral("YPos"), sprite.frameRect().topLeft());
    // The image's own size, repeated border and all, though the corner is that of the picture inside it. This
    // is meant: files have been so from the start.
    file.writeSize(QStringLiteral("Width"), QStringLiteral("Height"), sprite.size());
}

} // namespace

DataExporterCEGUI::DataExporterCEGUI(const DataExporterInfo& info) : DataExporter(info) {}

void DataExporterCEGUI::write() const {
    XmlDataFile file(fileName());
    QXmlStreamWriter& xml = file.xml();
    xml.writeStartDocument();
    file.writeOrigin(smartUpdateKey());
    xml.writeStartElement(QStringLiteral("Imageset"));
    xml.writeAttribute(QStringLiteral("Name"), QFileInfo(settings()->textureFileName()).baseName());
    xml.writeAttribute(QStringLiteral("Imagefile"), textureName());
    file.writeSize(QStringLiteral("NativeHorzRes"), QStringLiteral("NativeVertRes"), texture().size());
    xml.writeAttribute(QStringLiteral("AutoScaled"), QStringLiteral("false"));
    for (const PackedSprite& sprite : sortedSprites())
        writeSprite(file, nameInFile(sprite), sprite);
    file.writeEnd();
    file.commit();
}
