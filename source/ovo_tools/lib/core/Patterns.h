#pragma once

#include <QRegExp>
#include <QString>

// The toolkit's old expression engine, behind two small types: later toolkits lack it, and its dialect is
// part of the results.

/// Shell pattern: `*`, `?`, `[...]`, with `\` as escape, case sensitive.
class WildcardPattern {
public:
    explicit WildcardPattern(const QString& pattern);

    /// Whether the pattern matches the whole text.
    bool matches(const QString& text) const { return m_expression.exactMatch(text); }

private:
    QRegExp m_expression;
};

/// A case sensitive regular expression and what takes the place of its matches.
class ReplaceRule {
public:
    ReplaceRule(const QString& expression, const QString& replacement);

    /// The text with all matches replaced; as it is for an expression that isn't valid.
    QString applied(const QString& text) const;

private:
    QRegExp m_expression;
    QString m_replacement;
};
