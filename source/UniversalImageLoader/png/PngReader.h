#pragma once

#include "PngLog.h"
#include "PngOptions.h"
#include "PngPicture.h"

/// What stands in an input file beside the picture.
struct PngInput {
    std::size_t fileSize = 0; ///< bytes
    std::size_t idatSize = 0; ///< data bytes of all IDAT chunks
    std::size_t idatChunks = 0;
    std::size_t colorChunkBytes = 0; ///< of PLTE and tRNS, with their frames
    bool isSigned = false;           ///< dSIG
    bool isAnimated = false;         ///< acTL
};

/// Decodes a PNG file (PNG second edition, ISO/IEC 15948) with all its chunks. The picture points into the
/// file's bytes. Throws Error with libpng's text for what can't be decoded.
PngPicture readPng(const QByteArray& file, const PngOptions& options, PngLog& log, PngInput& input);
