#pragma once

#include "DeflateSymbols.h"

/// Writes the blocks of a deflate stream (RFC 1951), each in the shortest of the three forms.
class DeflateWriter {
public:
    /// `bytes`: what the symbols of the blocks stand for.
    explicit DeflateWriter(const std::uint8_t* bytes) : m_bytes(bytes) {}

    void write(const DeflateSymbols& block, bool isLast);

    /// Fills up to a whole byte, with an empty block, so that another stream's blocks may follow.
    void align();

    /// Bits that were written so far.
    std::uint64_t size() const { return 8 * std::uint64_t{m_out.size()} + static_cast<unsigned>(m_count); }

    /// The stream; after the last block or align().
    std::vector<std::uint8_t> take();

private:
    struct Code {
        std::uint16_t bits = 0;
        std::uint16_t length = 0;
    };
    using Codes = std::vector<Code>;

    static Codes codesOf(const std::vector<std::uint8_t>& lengths);

    void put(std::uint64_t bits, int count);
    void writeStored(const DeflateSymbols& block, bool isLast);
    void writeSymbols(const DeflateSymbols& block, const Codes& literals, const Codes& distances);

    const std::uint8_t* m_bytes;
    std::vector<std::uint8_t> m_out;
    std::uint64_t m_bits = 0; ///< not yet written, the first in the lowest
    int m_count = 0;
};
