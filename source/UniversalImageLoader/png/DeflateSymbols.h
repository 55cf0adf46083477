#pragma once

#include <cstdint>
#include <vector>

/// A literal, or a match of bytes that were there before.
struct DeflateSymbol {
    std::uint16_t length; ///< of a match, 3 to 258; 0 for a literal
    std::uint16_t value;  ///< distance of a match less one, or the literal's byte
};

/// What a block of a deflate stream is written from.
struct DeflateSymbols {
    static constexpr std::size_t capacity = 1 << 15;

    std::vector<DeflateSymbol> symbols;
    std::size_t begin = 0; ///< the bytes that they stand for
    std::size_t end = 0;
};
