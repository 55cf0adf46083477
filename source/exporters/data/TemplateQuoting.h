#pragma once

#include <QString>

/// A sprite's name can hold any character: these write it so that the target's own reader gets it back.
namespace TemplateQuoting {

/// A string of JSON (RFC 8259) with its quotation marks.
QString json(const QString& text);

/// A string of Lua, 5.1 and later, with its quotation marks.
QString lua(const QString& text);

/// A string of CSS (Syntax Module Level 3) with its quotation marks. Sass and Less, which compile to it, find
/// no expression to fill in.
QString css(const QString& text);

/// Text of XML 1.0, for elements and attributes. What XML can't hold becomes U+FFFD.
QString xml(const QString& text);

/// For formats of lines that have no quotes: control characters, colons, blanks at either end, and a text of
/// no characters become "_".
QString line(const QString& text);

} // namespace TemplateQuoting
