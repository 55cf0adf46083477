#include "XmlDocument.h"

#include "Error.h"

#include <QXmlStreamReader>

namespace {

constexpr int maxDepth = 200;

[[noreturn]] void refuse(const QString& message) { throw Error(Error::Parse, message); }

/// Encodings in which both parsers see the same brackets.
bool isPlainEncoding(const QStringRef& name) {
    for (const char* plain : {"", "UTF-8", "UTF-16", "US-ASCII", "ISO-8859-1"}) {
        if (name.compare(QLatin1String(plain), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

void checkToken(const QXmlStreamReader& stream, int& depth) {
    switch (stream.tokenType()) {
    case QXmlStreamReader::StartDocument:
        if (!isPlainEncoding(stream.documentEncoding()))
            refuse(QStringLiteral("Encoding %1 is not supported").arg(stream.documentEncoding()));
        break;
    case QXmlStreamReader::DTD:
        // A few bytes of entities can expand to gigabytes.
        if (stream.text().contains(QLatin1Char('[')))
            refuse(QStringLiteral("Declarations inside a document are not supported"));
        break;
    case QXmlStreamReader::StartElement:
        if (++depth > maxDepth)
            refuse(QStringLiteral("The elements are nested more than %1 deep (line %2)")
                       .arg(QString::number(maxDepth), QString::number(stream.lineNumber())));
        break;
    case QXmlStreamReader::EndElement:
        --depth;
        break;
    default:
        break;
    }
}

/// Walks the document without building anything. What this walk can't finish is refused here too: behind the
/// fault any depth could hide from it.
void checkHarmless(const QByteArray& bytes) {
    QXmlStreamReader stream(bytes);
    int depth = 0;
    while (!stream.atEnd()) {
        stream.readNext();
        checkToken(stream, depth);
    }
    // A document that merely ends too early has been seen whole, and gets the other parser's words.
    if (stream.hasError() && stream.error() != QXmlStreamReader::PrematureEndOfDocumentError)
        refuse(stream.errorString());
}

} // namespace

QDomDocument parseXml(QIODevice& device) {
    const QByteArray bytes = device.readAll();
    checkHarmless(bytes);
    QDomDocument document;
    QString message;
    if (!document.setContent(bytes, &message))
        refuse(message);
    return document;
}
