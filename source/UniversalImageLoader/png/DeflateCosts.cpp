#include "DeflateCosts.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr float unit = 16;

std::uint16_t cost(float bits) { return static_cast<std::uint16_t>(bits * unit + 0.5F); }

/// Bits of a code that is used `frequency` times among `all`. No code is longer than 15.
float codeBits(float frequency, float all) { return std::min(std::log2(all / frequency), 15.0F); }

int extraBitsOfLength(std::size_t length) {
    return deflateFormat::literalAlphabet.extraBits[deflateFormat::lengthCodes[length]];
}

} // namespace

DeflateCosts::DeflateCosts() {
    for (std::size_t byte = 0; byte < m_literals.size(); ++byte) {
        const auto difference = static_cast<float>(std::abs(static_cast<std::int8_t>(byte)));
        m_literals[byte] = cost(byte == 0 ? 2 : 3 + std::log2(difference));
    }
    m_lengths.fill(0);
    for (std::size_t length = 3; length < m_lengths.size(); ++length)
        m_lengths[length] = cost(7.0F + static_cast<float>(extraBitsOfLength(length)));
    for (std::size_t code = 0; code < m_distances.size(); ++code)
        m_distances[code] = cost(4.5F + deflateFormat::distanceAlphabet.extraBits[code]);
}

void DeflateCosts::learn(const DeflateSymbol* first, const DeflateSymbol* last) {
    // Whatever didn't come up may still come.
    constexpr float unseen = 0.3F;
    std::array<float, deflateFormat::literalCodes> literals;
    std::array<float, deflateFormat::distanceCodes> distances;
    literals.fill(unseen);
    distances.fill(unseen);
    float literalCount = unseen * literals.size();
    float distanceCount = unseen * distances.size();
    for (; first != last; ++first) {
        ++literalCount;
        if (first->length == 0) {
            ++literals[first->value];
            continue;
        }
        ++literals[deflateFormat::lengthCodes[first->length]];
        ++distances[deflateFormat::distanceCode(first->value + std::size_t{1})];
        ++distanceCount;
    }
    for (float& frequency : literals)
        frequency = codeBits(frequency, literalCount);
    for (std::size_t byte = 0; byte < m_literals.size(); ++byte)
        m_literals[byte] = cost(literals[byte]);
    for (std::size_t length = 3; length < m_lengths.size(); ++length)
        m_lengths[length] = cost(literals[deflateFormat::lengthCodes[length]] +
                                 static_cast<float>(extraBitsOfLength(length)));
    for (std::size_t code = 0; code < m_distances.size(); ++code)
        m_distances[code] =
            cost(codeBits(distances[code], distanceCount) + deflateFormat::distanceAlphabet.extraBits[code]);
}
