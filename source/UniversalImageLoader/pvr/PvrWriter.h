#pragma once

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QString>
#include <QVariant>

/// The bytes of a PVR file, version 2. Options: "pixelformat" (64 bits, see PvrPixelFormat.h; RGBA with eight
/// bits a channel if absent) and "flipped" (the last row first). Empty if such a file can't hold the format
/// or the picture; for a picture that is told on the debug channel.
QByteArray pvr2Data(const QImage& image, const QHash<QString, QVariant>& options);

/// The zlib container of the cocos2d engine around a file.
QByteArray cczContainer(const QByteArray& file);

/// A gzip stream of a file, as zlib writes it at its default level.
QByteArray gzipStream(const QByteArray& file);
