#pragma once

#include "PngFilteredRows.h"

#include <atomic>
#include <optional>

/// How zlib is called.
struct PngDeflateParameters {
    int level;      ///< 1 to 9
    int memory;     ///< 1 to 9
    int strategy;   ///< 0 to 3
    int windowBits; ///< 8 to 15
};

/// The window that libpng lets deflate have for so many bytes of rows: none that is larger than needed. 9
/// to 15.
int deflateWindowBits(std::size_t dataSize, int windowBits);

/// The content of IDAT for the rows, byte by byte that of libpng's writer with these parameters. Null as soon
/// as it has more bytes than `limit`, which other threads may lower on the way. Throws Error, std::bad_alloc.
std::optional<std::vector<std::uint8_t>> deflateRows(const PngFilteredRows& rows,
                                                     const PngDeflateParameters& parameters,
                                                     const std::atomic<std::size_t>& limit);
