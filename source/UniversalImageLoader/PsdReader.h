#pragma once

#include <QIODevice>
#include <QImage>

/// Reads the merged picture of a Photoshop file (version 1, RGB, 8 bits a channel, the first four of at most
/// 16 channels), and takes out the white that it is composed against. Null on failure; a refused kind is told
/// on the debug channel.
QImage readPsd(QIODevice& device);
