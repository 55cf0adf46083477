#pragma once

#include <cstdint>
#include <vector>

/// The code lengths of one Huffman tree of a deflate block as zlib chooses them, with their costs in bits.
struct DeflateTree {
    std::vector<std::uint8_t> lengths; ///< of the codes up to the last one used; 0 for unused ones
    std::uint64_t bits = 0;            ///< of all symbols, with their extra bits
};

/// What is the same for all trees of a kind.
struct DeflateAlphabet {
    int codes;                     ///< how many there are
    int maximumLength;             ///< of a code, in bits
    const std::uint8_t* extraBits; ///< of each code
};

/// `frequencies`: of each code of the alphabet, none above 65,535 together.
DeflateTree buildDeflateTree(const DeflateAlphabet& alphabet, const std::uint32_t* frequencies);
