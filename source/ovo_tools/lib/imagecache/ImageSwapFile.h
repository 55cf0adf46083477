#pragma once

#include <QImage>
#include <QString>

/// Temporary files of the image cache. The form is the process's own and lasts no longer than it: lightly
/// compressed pixels, since a temporary folder often lies in memory itself.
namespace ImageSwapFile {

/// Writes the pixels, format and colour table. The file belongs to the user alone (mode 0600) and is made
/// new, never opened through somebody's link. False if it can't be made or not wholly be written; no file
/// stays then.
bool write(const QString& fileName, const QImage& image);

/// What write() wrote, pixel for pixel. Null if the file can't be opened, is cut off or damaged.
QImage read(const QString& fileName);

} // namespace ImageSwapFile
