#include "Patterns.h"

WildcardPattern::WildcardPattern(const QString& pattern)
    : m_expression(pattern, Qt::CaseSensitive, QRegExp::WildcardUnix) {}

ReplaceRule::ReplaceRule(const QString& expression, const QString& replacement)
    : m_expression(expression, Qt::CaseSensitive), m_replacement(replacement) {}

QString ReplaceRule::applied(const QString& text) const {
    QString result = text;
    return result.replace(m_expression, m_replacement);
}
