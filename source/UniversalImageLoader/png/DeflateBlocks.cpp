#include "DeflateBlocks.h"

#include "DeflateTree.h"

#include <algorithm>
#include <array>
#include <bit>

namespace {

constexpr std::size_t endOfBlock = 256;
constexpr int longestCode = 15;

constexpr std::array<std::uint8_t, 29> lengthExtraBits = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                                          2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};

constexpr std::array<std::uint8_t, 286> literalExtraBits() {
    std::array<std::uint8_t, 286> bits = {};
    for (std::size_t i = 0; i < lengthExtraBits.size(); ++i)
        bits[257 + i] = lengthExtraBits[i];
    return bits;
}

constexpr std::array<std::uint8_t, 30> distanceExtraBits() {
    std::array<std::uint8_t, 30> bits = {};
    for (std::size_t i = 4; i < bits.size(); ++i)
        bits[i] = static_cast<std::uint8_t>(i / 2 - 1);
    return bits;
}

constexpr auto literalExtra = literalExtraBits();
constexpr auto distanceExtra = distanceExtraBits();
constexpr std::array<std::uint8_t, 19> lengthCodeExtra = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                                          0, 0, 0, 0, 0, 0, 2, 3, 7};

constexpr DeflateAlphabet literalAlphabet = {286, longestCode, literalExtra.data()};
constexpr DeflateAlphabet distanceAlphabet = {30, longestCode, distanceExtra.data()};
constexpr DeflateAlphabet lengthAlphabet = {19, 7, lengthCodeExtra.data()};

/// Bits of a literal or length in the fixed tree.
unsigned fixedLength(std::size_t code) {
    if (code < 144)
        return 8;
    if (code < 256)
        return 9;
    return code < 280 ? 7 : 8;
}

/// Counts how a tree's code lengths are stored: runs of them become codes of their own. The limits of a run
/// depend on what stands before it, as in zlib.
void countRuns(const std::vector<std::uint8_t>& lengths, std::array<std::uint32_t, 19>& codes) {
    constexpr std::size_t copyPrevious = 16;
    constexpr std::size_t shortZeros = 17;
    constexpr std::size_t longZeros = 18;
    int previous = -1;
    int count = 0;
    int maximum = lengths[0] == 0 ? 138 : 7;
    int minimum = lengths[0] == 0 ? 3 : 4;
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        const int length = lengths[i];
        const int next = i + 1 < lengths.size() ? lengths[i + 1] : -1;
        if (++count < maximum && length == next)
            continue;
        if (count < minimum) {
            codes[static_cast<std::size_t>(length)] += static_cast<std::uint32_t>(count);
        } else if (length != 0) {
            if (length != previous)
                ++codes[static_cast<std::size_t>(length)];
            ++codes[copyPrevious];
        } else {
            ++codes[count <= 10 ? shortZeros : longZeros];
        }
        count = 0;
        previous = length;
        maximum = next == 0 ? 138 : length == next ? 6 : 7;
        minimum = next == 0 || length == next ? 3 : 4;
    }
}

/// Bits of the header that tells the trees of a block.
std::uint64_t treesBits(const DeflateTree& literals, const DeflateTree& distances) {
    constexpr std::array<std::size_t, 19> order = {16, 17, 18, 0, 8,  7, 9,  6, 10, 5,
                                                   11, 4,  12, 3, 13, 2, 14, 1, 15};
    std::array<std::uint32_t, 19> codes = {};
    countRuns(literals.lengths, codes);
    countRuns(distances.lengths, codes);
    const DeflateTree tree = buildDeflateTree(lengthAlphabet, codes.data());
    std::size_t stored = order.size();
    while (stored > 4 && (order[stored - 1] >= tree.lengths.size() || tree.lengths[order[stored - 1]] == 0))
        --stored;
    return 5 + 5 + 4 + 3 * stored + tree.bits;
}

} // namespace

DeflateBlocks::DeflateBlocks(int memory) : m_capacity((std::size_t{1} << (memory + 6)) - 1) {
    m_literals[endOfBlock] = 1;
}

const std::array<std::uint16_t, 259>& DeflateBlocks::lengthCodes() {
    static const std::array<std::uint16_t, 259> codes = [] {
        std::array<std::uint16_t, 259> table = {};
        std::size_t length = 3;
        for (std::size_t code = 0; code < 28; ++code)
            for (std::size_t i = 0; i < std::size_t{1} << lengthExtraBits[code]; ++i)
                if (length < table.size())
                    table[length++] = static_cast<std::uint16_t>(257 + code);
        table[258] = 285; // the longest length has a code of its own
        return table;
    }();
    return codes;
}

std::size_t DeflateBlocks::distanceCode(std::size_t distance) {
    const std::size_t value = distance - 1;
    if (value < 4)
        return value;
    // Two codes for each power of two.
    const auto power = static_cast<std::size_t>(std::bit_width(value) - 1);
    return 2 * power + (value >> (power - 1) & 1);
}

void DeflateBlocks::close(std::size_t bytes, bool isStorable, bool isLast) {
    const DeflateTree literals = buildDeflateTree(literalAlphabet, m_literals.data());
    const DeflateTree distances = buildDeflateTree(distanceAlphabet, m_distances.data());
    const std::uint64_t own = literals.bits + distances.bits + treesBits(literals, distances);
    std::uint64_t fixed = 0;
    for (std::size_t code = 0; code < m_literals.size(); ++code)
        fixed += std::uint64_t{m_literals[code]} * (fixedLength(code) + literalExtra[code]);
    for (std::size_t code = 0; code < m_distances.size(); ++code)
        fixed += std::uint64_t{m_distances[code]} * (5U + distanceExtra[code]);

    const std::uint64_t fixedBytes = (fixed + 3 + 7) / 8;
    const std::uint64_t smaller = std::min((own + 3 + 7) / 8, fixedBytes);
    if (bytes + 4 <= smaller && isStorable)
        m_bits = (m_bits + 3 + 7) / 8 * 8 + 32 + 8 * std::uint64_t{bytes};
    else
        m_bits += 3 + (fixedBytes == smaller ? fixed : own);
    if (isLast)
        m_bits = (m_bits + 7) / 8 * 8;
    m_literals.fill(0);
    m_literals[endOfBlock] = 1;
    m_distances.fill(0);
    m_symbols = 0;
}
