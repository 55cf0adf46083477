#include "XmlDocument.h"

#include "Error.h"

#include <QXmlStreamReader>

namespace {

constexpr int maxDepth = 200;

/// Walks the document without building anything. A document that this walk can't finish is refused here too:
/// what follows the fault could hide any depth from it.
void checkDepth(const QByteArray& bytes) {
    QXmlStreamReader stream(bytes);
    int depth = 0;
    while (!stream.atEnd()) {
        switch (stream.readNext()) {
        case QXmlStreamReader::StartElement:
            if (++depth > maxDepth)
                throw Error(Error::Parse,
                            QStringLiteral("The elements are nested more than %1 deep (line %2)")
                                .arg(QString::number(maxDepth), QString::number(stream.lineNumber())));
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        default:
            break;
        }
    }
    if (stream.hasError())
        throw Error(Error::Parse, stream.errorString());
}

} // namespace

QDomDocument parseXml(QIODevice& device) {
    const QByteArray bytes = device.readAll();
    // No more elements than opening brackets: a small document can't be deep enough to do harm.
    if (bytes.count('<') > 1000)
        checkDepth(bytes);
    QDomDocument document;
    QString message;
    if (!document.setContent(bytes, &message))
        throw Error(Error::Parse, message);
    return document;
}
