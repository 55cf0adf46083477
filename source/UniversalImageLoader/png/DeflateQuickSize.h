#pragma once

#include "PngFilteredRows.h"

#include <atomic>
#include <optional>

// The size of what zlib's deflate would write for the rows, in bytes; null as soon as it has to be more than
// `limit`, which other threads may lower on the way. `memory`: zlib's memory level.

/// At one of the levels 1 to 3, with strategy 0 or 1: these levels don't care which.
std::optional<std::size_t> deflateFastSize(const PngFilteredRows& rows, int level, int memory, int windowBits,
                                           const std::atomic<std::size_t>& limit);

/// With strategy 2: no matches at all.
std::optional<std::size_t> deflateHuffmanSize(const PngFilteredRows& rows, int memory, int windowBits,
                                              const std::atomic<std::size_t>& limit);

/// With strategy 3: only runs of one byte.
std::optional<std::size_t> deflateRunsSize(const PngFilteredRows& rows, int memory, int windowBits,
                                           const std::atomic<std::size_t>& limit);
