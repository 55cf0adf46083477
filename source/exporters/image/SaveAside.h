#pragma once

#include <QHash>
#include <QImage>
#include <QString>
#include <QVariant>

/// Saves through the image file library so that the file appears under its name only when it is complete: it
/// is written in a temporary folder beside its place, under its own name (which the formats look at), and
/// moved. A target that exists and is no plain file, or that lies where no folder can be made, is written to
/// directly. False on failure, nothing of it stays then; what stood there before does. `format` is an
/// extension without dot. Errors that the library throws pass.
bool saveAside(const QString& fileName, const QString& format, const QImage& image,
               const QHash<QString, QVariant>& options);
