#include "XmlDocument.h"

#include "Error.h"

#include <QXmlStreamReader>
#include <QtEndian>

namespace {

constexpr int maxDepth = 200;

// A hundred times what a large project comes to. A document in memory takes many times its bytes.
constexpr int maxBytes = 64 * 1024 * 1024;
constexpr int maxNodes = 2000000;

// The parsers compare all attributes of an element with each other: tens of thousands take minutes.
constexpr int maxAttributes = 200;

[[noreturn]] void refuse(const QString& message) { throw Error(Error::Parse, message); }

/// Encodings in which both parsers see the same brackets.
bool isPlainEncoding(const QStringRef& name) {
    for (const char* plain : {"", "UTF-8", "UTF-16", "US-ASCII", "ISO-8859-1"}) {
        if (name.compare(QLatin1String(plain), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

/// The markup of a document, whose characters take two bytes each in UTF-16.
class Markup {
public:
    explicit Markup(const QByteArray& bytes) : m_bytes(bytes) {
        const auto first = bytes.size() < 2 ? 0 : qFromBigEndian<quint16>(bytes.constData());
        m_isBigEndian = first == 0xfeff || first == '<';
        m_isWide = m_isBigEndian || first == 0xfffe || first == '<' << 8;
    }

    int size() const { return m_isWide ? m_bytes.size() / 2 : m_bytes.size(); }

    /// 'x' for what is no ASCII.
    char at(int index) const {
        if (!m_isWide)
            return m_bytes.at(index);
        const int low = 2 * index + (m_isBigEndian ? 1 : 0);
        return m_bytes.at(low ^ 1) == 0 ? m_bytes.at(low) : 'x';
    }

private:
    const QByteArray& m_bytes;
    bool m_isBigEndian = false;
    bool m_isWide = false;
};

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

/// Counts what looks like an attribute, before a parser sees it. No value of one can hold a "<".
void checkAttributes(const Markup& markup) {
    int attributes = 0;
    bool equals = false;
    for (int i = 0; i < markup.size(); ++i) {
        const char c = markup.at(i);
        if (isBlank(c))
            continue;
        if (c == '<')
            attributes = 0;
        else if (equals && (c == '"' || c == '\'') && ++attributes > maxAttributes)
            refuse(QStringLiteral("An element has more than %1 attributes").arg(maxAttributes));
        equals = c == '=';
    }
}

/// What was met of a document so far.
struct Tally {
    int depth = 0;
    int nodes = 0;
};

void checkToken(const QXmlStreamReader& stream, Tally& tally) {
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
        if (++tally.depth > maxDepth)
            refuse(QStringLiteral("The elements are nested more than %1 deep (line %2)")
                       .arg(QString::number(maxDepth), QString::number(stream.lineNumber())));
        break;
    case QXmlStreamReader::EndElement:
        --tally.depth;
        return;
    default:
        break;
    }
    if (!stream.isWhitespace() && ++tally.nodes > maxNodes)
        refuse(QStringLiteral("The document has more than %1 elements and texts").arg(maxNodes));
}

/// Walks the document without building anything. What this walk can't finish is refused here too: behind the
/// fault any depth could hide from it.
void checkHarmless(const QByteArray& bytes) {
    if (bytes.size() > maxBytes)
        refuse(QStringLiteral("The document is larger than %1 bytes").arg(maxBytes));
    checkAttributes(Markup(bytes));
    QXmlStreamReader stream(bytes);
    // The parser that builds the document knows no namespaces either.
    stream.setNamespaceProcessing(false);
    Tally tally;
    while (!stream.atEnd()) {
        stream.readNext();
        checkToken(stream, tally);
    }
    // A document that merely ends too early has been seen whole, and gets the other parser's words.
    if (stream.hasError() && stream.error() != QXmlStreamReader::PrematureEndOfDocumentError)
        refuse(stream.errorString());
}

} // namespace

QDomDocument parseXml(QIODevice& device) {
    const QByteArray bytes = device.read(maxBytes + 1);
    checkHarmless(bytes);
    QDomDocument document;
    QString message;
    if (!document.setContent(bytes, &message))
        refuse(message);
    return document;
}
