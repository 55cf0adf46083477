#include "PlistReader.h"

#include "Error.h"
#include "XmlDocument.h"

#include <QBuffer>
#include <QXmlStreamReader>

namespace {

[[noreturn]] void refuse(const QString& message) { throw Error(Error::Parse, message); }

// Encodings in which an element's bracket is a bracket to whoever counts them.
bool isPlainEncoding(const QStringRef& name) {
    for (const char* plain : {"", "UTF-8", "UTF-16", "US-ASCII", "ISO-8859-1"})
        if (name.compare(QLatin1String(plain), Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

// What stands before the root element. Declarations inside the document are no part of a property list, and a
// few bytes of entities can expand to gigabytes.
void checkProlog(const QByteArray& bytes) {
    QXmlStreamReader stream(bytes);
    while (!stream.atEnd() && stream.readNext() != QXmlStreamReader::StartElement) {
        if (stream.isStartDocument() && !isPlainEncoding(stream.documentEncoding()))
            refuse(QStringLiteral("Encoding %1 is not supported").arg(stream.documentEncoding()));
        if (stream.isDTD() && stream.text().contains(QLatin1Char('[')))
            refuse(QStringLiteral("Declarations inside a property list are not supported"));
    }
    // A document that merely ends too early gets the other parser's words.
    if (stream.hasError() && stream.error() != QXmlStreamReader::PrematureEndOfDocumentError)
        refuse(stream.errorString());
}

QVariant readValue(const QDomElement& element);

QVariantHash readDictionary(const QDomElement& dictionary) {
    QVariantHash values;
    for (QDomElement key = dictionary.firstChildElement(); !key.isNull();) {
        if (key.tagName() != QLatin1String("key"))
            refuse(QStringLiteral("<key> missign in <dict>"));
        const QDomElement value = key.nextSiblingElement();
        values.insert(key.text(), readValue(value));
        key = value.nextSiblingElement();
    }
    return values;
}

QVariantList readArray(const QDomElement& array) {
    QVariantList values;
    for (QDomElement value = array.firstChildElement(); !value.isNull(); value = value.nextSiblingElement())
        values.append(readValue(value));
    return values;
}

QVariant readValue(const QDomElement& element) {
    const QString name = element.tagName();
    if (name == QLatin1String("string"))
        return element.text();
    if (name == QLatin1String("real"))
        return element.text().toDouble();
    if (name == QLatin1String("integer"))
        return element.text().toInt();
    if (name == QLatin1String("true"))
        return true;
    if (name == QLatin1String("false"))
        return false;
    if (name == QLatin1String("date"))
        refuse(QStringLiteral("<date> not yet supported"));
    if (name == QLatin1String("array"))
        return readArray(element);
    if (name == QLatin1String("dict"))
        return readDictionary(element);
    refuse(QStringLiteral("Unknown element type <%1>").arg(name));
}

} // namespace

QVariantHash PlistReader::read(QIODevice& device) {
    QByteArray bytes = device.readAll();
    checkProlog(bytes);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    const QDomElement plist = parseXml(buffer).firstChildElement(QStringLiteral("plist"));
    if (plist.isNull())
        refuse(QStringLiteral("No <plist> element found at the top-level of the XML file!"));
    return readValue(plist.firstChildElement(QStringLiteral("dict"))).toHash();
}
