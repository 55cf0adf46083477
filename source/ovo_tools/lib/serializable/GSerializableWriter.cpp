#include "GSerializableWriter.h"

#include "GSerializable.h"

GSerializableWriter::GSerializableWriter(QIODevice* device, const QDir& base)
    : QXmlStreamWriter(device), m_base(base) {}

GSerializableWriter::~GSerializableWriter() { endDocument(); }

void GSerializableWriter::beginDocument() {
    setCodec("UTF-8");
    setAutoFormatting(true);
    writeStartDocument();
    writeStartElement(QStringLiteral("data"));
    writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    m_documentStarted = true;
}

void GSerializableWriter::endDocument() {
    if (!m_documentStarted)
        return;
    m_documentStarted = false;
    writeEndElement();
    writeEndDocument();
}

void GSerializableWriter::beginStruct(const char* type) {
    writeStartElement(QStringLiteral("struct"));
    writeAttribute(QStringLiteral("type"), QLatin1String(type));
}

void GSerializableWriter::writeKey(const char* name) {
    writeTextElement(QStringLiteral("key"), QLatin1String(name));
}

void GSerializableWriter::writeEnum(const QString& qualifiedName, const QString& stored) {
    writeStartElement(QStringLiteral("enum"));
    writeAttribute(QStringLiteral("type"), qualifiedName);
    writeCharacters(stored);
    writeEndElement();
}

void GSerializableWriter::beginArray() { writeStartElement(QStringLiteral("array")); }

void GSerializableWriter::writeString(const QString& text) {
    writeTextElement(QStringLiteral("string"), text);
}

void GSerializableWriter::writeFileName(const GFileName& fileName) {
    writeTextElement(QStringLiteral("filename"), m_base.relativeFilePath(fileName.path()));
}

void GSerializableWriter::writeDouble(double value) {
    writeTextElement(QStringLiteral("double"), QString::number(value, 'g', 6));
}

void GSerializableWriter::writeInt(int value) {
    writeTextElement(QStringLiteral("int"), QString::number(value));
}

void GSerializableWriter::writeUInt(uint value) {
    writeTextElement(QStringLiteral("uint"), QString::number(value));
}

void GSerializableWriter::writeBool(bool value) {
    writeEmptyElement(value ? QStringLiteral("true") : QStringLiteral("false"));
}

void GSerializableWriter::writeSize(const QSize& size) {
    writeStartElement(QStringLiteral("QSize"));
    writeKey("width");
    writeInt(size.width());
    writeKey("height");
    writeInt(size.height());
    writeEndElement();
}

void GSerializableWriter::writeObject(const GSerializable& object) { object.write(*this); }

void GSerializableWriter::endElement() { writeEndElement(); }
