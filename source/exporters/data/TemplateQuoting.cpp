#include "TemplateQuoting.h"

namespace {

bool isControl(QChar c) { return c < QLatin1Char(' ') || c == QChar(0x7f); }

QString number(QChar c, int digits, int base) {
    return QStringLiteral("%1").arg(c.unicode(), digits, base, QLatin1Char('0'));
}

/// The text between quotation marks, with a backslash before each of these and each backslash. `control`
/// writes a control character.
template <class Control>
QString quoted(const QString& text, Control control) {
    QString result(QLatin1Char('"'));
    for (const QChar c : text) {
        if (c == QLatin1Char('"') || c == QLatin1Char('\\'))
            result += QLatin1Char('\\') + QString(c);
        else if (isControl(c))
            result += control(c);
        else
            result += c;
    }
    return result + QLatin1Char('"');
}

/// What the production Char of XML has, of one code unit; halves of a pair are judged together.
bool isXmlCharacter(QChar c) {
    return c >= QLatin1Char(' ') ? c < QChar(0xfffe)
                                 : c == QLatin1Char('\t') || c == QLatin1Char('\n') || c == QLatin1Char('\r');
}

} // namespace

QString TemplateQuoting::json(const QString& text) {
    return quoted(text, [](QChar c) { return QStringLiteral("\\u") + number(c, 4, 16); });
}

QString TemplateQuoting::lua(const QString& text) {
    // Three digits always: a digit that follows isn't part of it.
    return quoted(text, [](QChar c) { return QStringLiteral("\\") + number(c, 3, 10); });
}

QString TemplateQuoting::css(const QString& text) {
    // The blank ends the number.
    QString result =
        quoted(text, [](QChar c) { return QStringLiteral("\\") + number(c, 1, 16) + QLatin1Char(' '); });
    result.replace(QLatin1String("#{"), QLatin1String("\\23 {"));
    result.replace(QLatin1String("@{"), QLatin1String("\\40 {"));
    return result;
}

QString TemplateQuoting::xml(const QString& text) {
    QString result = text.toHtmlEscaped();
    for (QChar& c : result) {
        if (!isXmlCharacter(c))
            c = QChar::ReplacementCharacter;
    }
    // A reader takes a bare one for a line feed.
    return result.replace(QLatin1Char('\r'), QLatin1String("&#13;"));
}

QString TemplateQuoting::line(const QString& text) {
    QString result = text;
    for (QChar& c : result) {
        if (isControl(c) || c == QLatin1Char(':'))
            c = QLatin1Char('_');
    }
    for (int i = 0; i < result.size() && result[i].isSpace(); ++i)
        result[i] = QLatin1Char('_');
    for (int i = result.size(); i > 0 && result[i - 1].isSpace(); --i)
        result[i - 1] = QLatin1Char('_');
    // An empty line ends something in most of these formats.
    return result.isEmpty() ? QStringLiteral("_") : result;
}
