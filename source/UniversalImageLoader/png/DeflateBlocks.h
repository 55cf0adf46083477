#pragma once

#include "DeflateFormat.h"

/// The size of a zlib stream from the symbols that deflate finds (RFC 1950, RFC 1951): collects them into
/// blocks as zlib does, and counts what zlib would write for each. To the bit: including the ties of its
/// Huffman trees, which show in how the code lengths are stored.
class DeflateBlocks {
public:
    /// `memory`: zlib's memory level, 1 to 9; it decides how many symbols a block has.
    explicit DeflateBlocks(int memory);

    // A symbol. True if the block is full, and has to be closed.
    bool literal(std::uint8_t byte) {
        ++m_literals[byte];
        return ++m_symbols == m_capacity;
    }
    bool match(std::size_t length, std::size_t distance) {
        ++m_literals[deflateFormat::lengthCodes[length]];
        ++m_distances[deflateFormat::distanceCode(distance)];
        return ++m_symbols == m_capacity;
    }

    /// Ends a block that stands for so many bytes. `isStorable`: they are still at hand, so that they may be
    /// stored as they are.
    void close(std::size_t bytes, bool isStorable, bool isLast);

    /// Bytes of the stream with its header and checksum, as far as its blocks are closed.
    std::size_t streamBytes() const { return 2 + static_cast<std::size_t>((m_bits + 7) / 8) + 4; }

private:
    const std::size_t m_capacity;
    std::size_t m_symbols = 0;
    std::uint64_t m_bits = 0;
    std::array<std::uint32_t, deflateFormat::literalCodes> m_literals = {};
    std::array<std::uint32_t, deflateFormat::distanceCodes> m_distances = {};
};
