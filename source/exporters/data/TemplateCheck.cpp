#include "TemplateCheck.h"

#include <QRegularExpression>
#include <QSet>

namespace {

constexpr int maxDepth = 200;

QString fault(const QString& text, int place, const QString& message) {
    return QStringLiteral("line %1: %2")
        .arg(QString::number(text.leftRef(place).count(QLatin1Char('\n')) + 1), message);
}

// Blanks are those of Unicode, as for the library. A tag never goes on in the next line.
QRegularExpression pattern(const QString& text) {
    return QRegularExpression(text, QRegularExpression::UseUnicodePropertiesOption);
}

struct Harm {
    QRegularExpression pattern;
    const char* message;
};

QString harmfulUse(const QString& text) {
    static const Harm harms[] = {
        {pattern(QStringLiteral(R"re(\{%(?:(?!%\})[^\n]){2000})re")),
         "The tag is longer than 2000 characters"},
        {pattern(QStringLiteral(R"re(\{%\s*regroup\s(?:(?!%\})[^\n])*?\sby\s+(?:(?!%\})\S)*\|)re")),
         "The tag regroup can't group by a filtered property"},
        // Nine digits fit into the library's integer; more are taken modulo its range.
        {pattern(QStringLiteral(R"re((?:\||filter\s+)divisibleby\b(?!:0*[1-9][0-9]{0,8}(?![\w.])))re")),
         "The filter divisibleby needs a whole number above 0, written out without quotes"},
        {pattern(QStringLiteral(R"re((?:\||filter\s+)(?:center|ljust|rjust|floatformat):["']?-?\d{6})re")),
         "The filters center, ljust, rjust and floatformat take up to 99999 characters"},
        {pattern(QStringLiteral(R"re(\{%\s*range\s+\S+\s+\S+\s+(?!0*[1-9][0-9]{0,8}\s+as\s)\S+\s+as\s)re")),
         "The tag range needs a step above 0, written out without quotes"},
        {pattern(QStringLiteral(R"re((?:\||filter\s+)truncatewords\b(?!:0*[1-9][0-9]{0,8}(?![\w.])))re")),
         "The filter truncatewords needs a whole number above 0, written out without quotes"},
        {pattern(QStringLiteral(R"re((?:\||filter\s+)slice\b(?!:(?:"[^":]*:[^"]*"|'[^':]*:[^']*')))re")),
         "The filter slice needs a range in quotes, with a colon, \":3\""},
        {pattern(QStringLiteral(R"re((?:\||filter\s+)get_digit\b(?!:[0-9]{1,9}(?![\w.])))re")),
         "The filter get_digit needs a whole number, written out without quotes"},
    };
    for (const Harm& harm : harms) {
        const QRegularExpressionMatch match = harm.pattern.match(text);
        if (match.hasMatch())
            return fault(text, match.capturedStart(), QLatin1String(harm.message));
        // A text made to wear the expression out.
        if (!match.isValid())
            return QStringLiteral("The template can't be checked");
    }
    return {};
}

QRegularExpressionMatchIterator tagNames(const QString& text) {
    static const QRegularExpression name = pattern(QStringLiteral(R"re(\{%\s*(\w+))re"));
    return name.globalMatch(text);
}

/// Tags that have an end: those that come with the library, and what else is ended somewhere in this text.
QSet<QString> blockTags(const QString& text) {
    QSet<QString> names{
        QStringLiteral("autoescape"), QStringLiteral("block"),     QStringLiteral("comment"),
        QStringLiteral("filter"),     QStringLiteral("for"),       QStringLiteral("if"),
        QStringLiteral("ifchanged"),  QStringLiteral("ifequal"),   QStringLiteral("ifnotequal"),
        QStringLiteral("range"),      QStringLiteral("spaceless"), QStringLiteral("with"),
        QStringLiteral("with_locale")};
    for (auto tags = tagNames(text); tags.hasNext();) {
        const QString name = tags.next().captured(1);
        if (name.startsWith(QLatin1String("end")))
            names.insert(name.mid(3));
    }
    return names;
}

} // namespace

QString templateFault(const QString& text) {
    const QString harm = harmfulUse(text);
    if (!harm.isEmpty())
        return harm;
    const QSet<QString> blocks = blockTags(text);
    int depth = 0;
    for (auto tags = tagNames(text); tags.hasNext();) {
        const QRegularExpressionMatch tag = tags.next();
        const QString name = tag.captured(1);
        if (blocks.contains(name) && ++depth > maxDepth)
            return fault(text, tag.capturedStart(),
                         QStringLiteral("The tag %1 is nested more than %2 deep").arg(name).arg(maxDepth));
        // An end without a beginning is an error where it stands; it doesn't make room for more.
        if (name.startsWith(QLatin1String("end")) && depth > 0)
            --depth;
    }
    return {};
}
