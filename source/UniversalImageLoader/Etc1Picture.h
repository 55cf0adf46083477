#pragma once

#include "ByteStream.h"

#include <QImage>

/// Reads a picture of ETC1 blocks, of which `blocksAcross` stand in a row. Null if they end early, unless
/// `shortIsZero`: then what is missing counts as zero bytes. Null for sizes that PluginImage refuses.
QImage readEtc1Picture(ByteStream& stream, int width, int height, int blocksAcross, bool shortIsZero);
