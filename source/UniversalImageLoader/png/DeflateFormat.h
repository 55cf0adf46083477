#pragma once

#include "DeflateTree.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

// What deflate's blocks are made of (RFC 1951).

namespace deflateFormat {

inline constexpr std::size_t endOfBlock = 256;
inline constexpr std::size_t literalCodes = 286; ///< literals, the end of a block and lengths
inline constexpr std::size_t distanceCodes = 30;
inline constexpr std::size_t longestMatch = 258;
inline constexpr std::size_t window = 32768; ///< farthest distance of a match

extern const DeflateAlphabet literalAlphabet;
extern const DeflateAlphabet distanceAlphabet;
extern const DeflateAlphabet lengthAlphabet; ///< of the code lengths that a block's header tells

/// The order in which a block's header tells the lengths of the codes of the third alphabet.
inline constexpr std::array<std::size_t, 19> lengthOrder = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                            11, 4,  12, 3, 13, 2, 14, 1, 15};

/// Code of a match's length, 257 to 285, for 3 to 258.
extern const std::array<std::uint16_t, longestMatch + 1> lengthCodes;

/// The shortest length of a code from 257 on, at code - 257, and the shortest distance of a code.
extern const std::array<std::uint16_t, 29> shortestLengths;
extern const std::array<std::uint16_t, distanceCodes> shortestDistances;

/// Code of a match's distance, 1 to 32,768.
inline std::size_t distanceCode(std::size_t distance) {
    const std::size_t value = distance - 1;
    if (value < 4)
        return value;
    // Two codes for each power of two.
    const auto power = static_cast<std::size_t>(std::bit_width(value) - 1);
    return 2 * power + (value >> (power - 1) & 1);
}

/// Bits of a literal or length in the fixed tree.
unsigned fixedLength(std::size_t code);

/// Bits that a block takes with trees of its own, or with the fixed ones, without its three first bits.
std::uint64_t ownBits(const DeflateTree& literals, const DeflateTree& distances);
std::uint64_t fixedBits(const std::uint32_t* literals, const std::uint32_t* distances);

/// A code length in a block's header, or a run of them.
struct LengthRun {
    std::uint8_t code;
    std::uint8_t extra; ///< what stands in the code's extra bits
};

/// How the code lengths of a tree are told.
void appendRuns(const std::vector<std::uint8_t>& lengths, std::vector<LengthRun>& runs);

/// The header of a block that has trees of its own.
struct TreesHeader {
    std::vector<LengthRun> runs;
    DeflateTree tree; ///< of the runs' codes
    std::size_t told; ///< how many lengths of that tree are told
    std::uint64_t bits() const { return 5 + 5 + 4 + 3 * told + tree.bits; }
};

TreesHeader treesHeader(const DeflateTree& literals, const DeflateTree& distances);

} // namespace deflateFormat
