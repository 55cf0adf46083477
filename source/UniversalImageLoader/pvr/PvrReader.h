#pragma once

#include <QIODevice>
#include <QImage>

/// Readers of PVR textures (versions 1 to 3) in their three containers. They give the largest picture of the
/// first surface, row by row as the texture holds it, whatever it says of orientation and premultiplied
/// alpha. Null on failure.
QImage readPvr(QIODevice& device);

/// Version 2 only.
QImage readPvrGz(QIODevice& device);

/// The zlib container of the cocos2d engine.
QImage readPvrCcz(QIODevice& device);
