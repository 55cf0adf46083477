#include "DeflateFormat.h"

namespace deflateFormat {

namespace {

constexpr int longestCode = 15;

constexpr std::array<std::uint8_t, 29> lengthExtraBits = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                                          2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};

constexpr std::array<std::uint8_t, literalCodes> literalExtraBits() {
    std::array<std::uint8_t, literalCodes> bits = {};
    for (std::size_t i = 0; i < lengthExtraBits.size(); ++i)
        bits[257 + i] = lengthExtraBits[i];
    return bits;
}

constexpr std::array<std::uint8_t, distanceCodes> distanceExtraBits() {
    std::array<std::uint8_t, distanceCodes> bits = {};
    for (std::size_t i = 4; i < bits.size(); ++i)
        bits[i] = static_cast<std::uint8_t>(i / 2 - 1);
    return bits;
}

/// The first value of each code, where a code stands for two to the power of its extra bits.
template <typename Value, std::size_t count>
constexpr std::array<Value, count> firstValues(const std::array<std::uint8_t, count>& extraBits,
                                               Value first) {
    std::array<Value, count> values = {};
    for (std::size_t code = 0; code < count; ++code) {
        values[code] = first;
        first = static_cast<Value>(first + (1U << extraBits[code]));
    }
    return values;
}

constexpr auto literalExtra = literalExtraBits();
constexpr auto distanceExtra = distanceExtraBits();
constexpr std::array<std::uint8_t, 19> lengthCodeExtra = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                                          0, 0, 0, 0, 0, 0, 2, 3, 7};

constexpr std::array<std::uint16_t, 29> shortestOfLengthCodes() {
    auto lengths = firstValues<std::uint16_t>(lengthExtraBits, 3);
    lengths[28] = longestMatch; // the longest length has a code of its own
    return lengths;
}

constexpr std::array<std::uint16_t, longestMatch + 1> codesOfLengths() {
    std::array<std::uint16_t, longestMatch + 1> codes = {};
    constexpr auto shortest = shortestOfLengthCodes();
    for (std::size_t code = 0; code < shortest.size(); ++code)
        for (std::size_t length = shortest[code]; length < codes.size(); ++length)
            codes[length] = static_cast<std::uint16_t>(257 + code);
    return codes;
}

} // namespace

const DeflateAlphabet literalAlphabet = {literalCodes, longestCode, literalExtra.data()};
const DeflateAlphabet distanceAlphabet = {distanceCodes, longestCode, distanceExtra.data()};
const DeflateAlphabet lengthAlphabet = {19, 7, lengthCodeExtra.data()};

const std::array<std::uint16_t, longestMatch + 1> lengthCodes = codesOfLengths();
const std::array<std::uint16_t, 29> shortestLengths = shortestOfLengthCodes();
const std::array<std::uint16_t, distanceCodes> shortestDistances =
    firstValues<std::uint16_t>(distanceExtra, 1);

unsigned fixedLength(std::size_t code) {
    if (code < 144)
        return 8;
    if (code < 256)
        return 9;
    return code < 280 ? 7 : 8;
}

std::uint64_t ownBits(const DeflateTree& literals, const DeflateTree& distances) {
    return literals.bits + distances.bits + treesHeader(literals, distances).bits();
}

std::uint64_t fixedBits(const std::uint32_t* literals, const std::uint32_t* distances) {
    std::uint64_t bits = 0;
    for (std::size_t code = 0; code < literalCodes; ++code)
        bits += std::uint64_t{literals[code]} * (fixedLength(code) + literalExtra[code]);
    for (std::size_t code = 0; code < distanceCodes; ++code)
        bits += std::uint64_t{distances[code]} * (5U + distanceExtra[code]);
    return bits;
}

void appendRuns(const std::vector<std::uint8_t>& lengths, std::vector<LengthRun>& runs) {
    constexpr std::uint8_t copyPrevious = 16;
    constexpr std::uint8_t shortZeros = 17;
    constexpr std::uint8_t longZeros = 18;
    int previous = -1;
    int count = 0;
    // The limits of a run depend on what stands before it, as in zlib.
    int maximum = lengths[0] == 0 ? 138 : 7;
    int minimum = lengths[0] == 0 ? 3 : 4;
    const auto add = [&runs](int code, int extra) {
        runs.push_back({static_cast<std::uint8_t>(code), static_cast<std::uint8_t>(extra)});
    };
    for (std::size_t i = 0; i < lengths.size(); ++i) {
        const int length = lengths[i];
        const int next = i + 1 < lengths.size() ? lengths[i + 1] : -1;
        if (++count < maximum && length == next)
            continue;
        if (count < minimum) {
            for (; count > 0; --count)
                add(length, 0);
        } else if (length != 0) {
            if (length != previous) {
                add(length, 0);
                --count;
            }
            add(copyPrevious, count - 3);
        } else {
            count <= 10 ? add(shortZeros, count - 3) : add(longZeros, count - 11);
        }
        count = 0;
        previous = length;
        maximum = next == 0 ? 138 : length == next ? 6 : 7;
        minimum = next == 0 || length == next ? 3 : 4;
    }
}

TreesHeader treesHeader(const DeflateTree& literals, const DeflateTree& distances) {
    TreesHeader header;
    appendRuns(literals.lengths, header.runs);
    appendRuns(distances.lengths, header.runs);
    std::array<std::uint32_t, 19> frequencies = {};
    for (const LengthRun& run : header.runs)
        ++frequencies[run.code];
    header.tree = buildDeflateTree(lengthAlphabet, frequencies.data());
    const std::vector<std::uint8_t>& lengths = header.tree.lengths;
    header.told = lengthOrder.size();
    while (header.told > 4 &&
           (lengthOrder[header.told - 1] >= lengths.size() || lengths[lengthOrder[header.told - 1]] == 0))
        --header.told;
    return header;
}

} // namespace deflateFormat
