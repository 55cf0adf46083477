#pragma once

#include <QByteArray>
#include <QSize>
#include <QString>

/// Size in pixels that a file's header declares, for the formats whose reader in the toolkit takes memory for
/// a picture without telling its size beforehand: "mng" (MHDR chunk) and "ico", "cur" (the first picture, PNG
/// or bitmap, whatever the directory says). Invalid for other formats and for files that are too short. A
/// side that no QSize holds comes out as the largest int.
QSize declaredSize(const QString& path, const QByteArray& format);
