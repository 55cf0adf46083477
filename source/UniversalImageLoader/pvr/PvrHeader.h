#pragma once

#include "ByteStream.h"

#include <QByteArray>

#include <optional>

/// The largest picture of a PVR texture.
struct PvrTexture {
    quint64 pixelFormat; ///< as version 3 numbers it
    qint64 width;        ///< pixels
    qint64 height;
};

/// Reads a header of version 1, 2 or 3, and what stands between it and the pixels. None if there is no such
/// header, or its pixel type isn't known.
std::optional<PvrTexture> readPvrHeader(ByteStream& stream);

inline constexpr int pvr2HeaderSize = 52;

/// The same of a version 2 header in `bytes`, pvr2HeaderSize of them.
std::optional<PvrTexture> parsePvr2Header(const quint8* bytes);

/// Bytes of pixels that a version 2 header tells.
quint32 pvr2DataSize(const quint8* bytes);

/// A version 2 header for one picture; none if no such file holds the pixel format or the size.
std::optional<QByteArray> pvr2Header(const PvrTexture& texture, bool flipped);
