#pragma once

#include <QRect>
#include <QString>

class PackedSprite;
class QTextStream;

/// The pieces that the Lua formats are made of. Names go out as they are.
namespace LuaText {

/// The fields of a rectangle in pixels, as they stand between braces.
QString rect(const QRect& rect);

/// Three comment lines: where the file comes from, the token, and one with nothing in it.
void writeOrigin(QTextStream& stream, const QString& token);

/// The record of a sprite. `place` is its field for the place on the sheet, as "textureRect = {...}".
void writeSprite(QTextStream& stream, const QString& name, const QString& place, const PackedSprite& sprite);

} // namespace LuaText
