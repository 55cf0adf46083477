#include "GSerializableReader.h"

#include "Error.h"
#include "GEnumInfo.h"
#include "GSerializable.h"
#include "GSerializableFactory.h"
#include "XmlDocument.h"

namespace {

void expect(const GSerializableNode& node, const char* kind) {
    if (node.name() != QLatin1String(kind))
        throw Error(Error::Parse, QStringLiteral("Trying to parse a node of type %1 as %2 (line %3)")
                                      .arg(node.name(), QLatin1String(kind), QString::number(node.line())));
}

/// Containers are refused without a line.
void expectContainer(const GSerializableNode& node, const char* kind) {
    if (node.name() != QLatin1String(kind))
        throw Error(
            Error::Parse,
            QStringLiteral("Trying to parse a node of type %1 as %2").arg(node.name(), QLatin1String(kind)));
}

} // namespace

QString GSerializableNode::structKey() const {
    if (name() != QLatin1String("key"))
        throw Error(Error::Parse, QStringLiteral("<key> missign in <struct>"));
    return text();
}

GSerializableReader::GSerializableReader(QIODevice& device, const QDir& base) : m_base(base) {
    const QDomDocument document = parseXml(device);
    m_data = document.firstChildElement();
    if (m_data.tagName() != QLatin1String("data"))
        throw Error(Error::Parse, QStringLiteral("No <data> element found at the top-level of the file (%1)!")
                                      .arg(m_data.tagName()));
}

std::unique_ptr<QObject> GSerializableReader::readObject() const {
    return readObject(GSerializableNode(m_data, this).firstChild());
}

void GSerializableReader::read(const GSerializableNode& node, QString& value) const {
    expect(node, "string");
    value = node.text();
}

void GSerializableReader::read(const GSerializableNode& node, GFileName& value) const {
    expect(node, "filename");
    value = GFileName(QDir::cleanPath(m_base.absoluteFilePath(node.text())));
}

void GSerializableReader::read(const GSerializableNode& node, double& value) const {
    expect(node, "double");
    value = node.text().toDouble();
}

void GSerializableReader::read(const GSerializableNode& node, int& value) const {
    expect(node, "int");
    value = node.text().toInt();
}

void GSerializableReader::read(const GSerializableNode& node, uint& value) const {
    expect(node, "uint");
    value = node.text().toUInt();
}

void GSerializableReader::read(const GSerializableNode& node, bool& value) const {
    value = node.name() == QLatin1String("true");
}

void GSerializableReader::read(const GSerializableNode& node, QSize& value) const {
    expect(node, "QSize");
    QSize size(-1, -1);
    for (GSerializableNode key = node.firstChild(); !key.isNull();) {
        if (key.name() != QLatin1String("key"))
            throw Error(Error::Parse, QStringLiteral("<key> missign in <QSize>"));
        const GSerializableNode item = key.next();
        if (key.text() == QLatin1String("width"))
            read(item, size.rwidth());
        else if (key.text() == QLatin1String("height"))
            read(item, size.rheight());
        key = item.next();
    }
    value = size;
}

int GSerializableReader::readEnum(const GSerializableNode& node, const GEnumInfoBase& info) const {
    expect(node, "enum");
    const QString type = node.attribute(QStringLiteral("type"));
    if (type != info.qualifiedName())
        throw Error(Error::Parse, QStringLiteral("Trying to parse node of enum type %1 as %2 (line %3)")
                                      .arg(type, info.qualifiedName(), QString::number(node.line())));
    return info.number(node.text().trimmed());
}

GSerializableNode GSerializableReader::arrayBegin(const GSerializableNode& node) const {
    expectContainer(node, "array");
    return node.firstChild();
}

std::unique_ptr<QObject> GSerializableReader::readObject(const GSerializableNode& node) const {
    expectContainer(node, "struct");
    std::unique_ptr<QObject> object(GSerializableFactory::create(node.attribute(QStringLiteral("type"))));
    auto* serializable = qobject_cast<GSerializable*>(object.get());
    if (!serializable)
        throwCantCreate(node);
    serializable->read(node.firstChild());
    return object;
}

void GSerializableReader::throwCantCreate(const GSerializableNode& node) {
    throw Error(Error::Parse,
                QStringLiteral("Can't create instance of %1").arg(node.attribute(QStringLiteral("type"))));
}
