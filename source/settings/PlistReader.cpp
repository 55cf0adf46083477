#include "PlistReader.h"

#include "Error.h"
#include "XmlDocument.h"

#include <QIODevice>

namespace {

[[noreturn]] void refuse(const QString& message) { throw Error(Error::Parse, message); }

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
    const QDomElement plist = parseXml(device).firstChildElement(QStringLiteral("plist"));
    if (plist.isNull())
        refuse(QStringLiteral("No <plist> element found at the top-level of the XML file!"));
    return readValue(plist.firstChildElement(QStringLiteral("dict"))).toHash();
}
