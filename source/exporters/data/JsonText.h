#pragma once

#include "PackedSprite.h"

#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <QTextStream>

class DataExporter;

/// The pieces that the JSON formats are made of. Their spacing is part of the formats: readers compare it.
namespace JsonText {

QString rect(const QRect& rect);
QString size(QSize size);
QString point(QPoint point);

/// A text as it stands between double quotes.
QString escaped(QString text);

/// The first six lines of the meta block, from its opening to the size of the sheet. `image` goes out as it
/// is.
void writeMetaHead(QTextStream& stream, const DataExporter& exporter, const QString& image);

/// The entries of sprites, with commas between them. `writeEntry` writes the one of its sprite.
template <class WriteEntry>
void writeEntries(QTextStream& stream, const QList<PackedSprite>& sprites, WriteEntry writeEntry) {
    const char* separator = "";
    for (const PackedSprite& sprite : sprites) {
        stream << separator;
        separator = ",\n";
        writeEntry(sprite);
    }
}

} // namespace JsonText
