#include "DeflateCosts.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr double unit = 16;

std::uint16_t cost(double bits) { return static_cast<std::uint16_t>(std::lround(bits * unit)); }

/// Bits of a code that is used `frequency` times among `all`. No code is longer than 15.
double codeBits(double frequency, double all) { return std::min(std::log2(all / frequency), 15.0); }

int extraBitsOfLength(std::size_t length) {
    return deflateFormat::literalAlphabet.extraBits[deflateFormat::lengthCodes[length]];
}

} // namespace

DeflateCosts::DeflateCosts() {
    for (std::size_t byte = 0; byte < m_literals.size(); ++byte) {
        const int difference = std::abs(static_cast<std::int8_t>(byte));
        m_literals[byte] = cost(difference == 0 ? 2 : 3 + std::log2(difference));
    }
    m_lengths.fill(0);
    for (std::size_t length = 3; length < m_lengths.size(); ++length)
        m_lengths[length] = cost(7 + extraBitsOfLength(length));
    for (std::size_t code = 0; code < m_distances.size(); ++code)
        m_distances[code] = cost(4.5 + deflateFormat::distanceAlphabet.extraBits[code]);
}

void DeflateCosts::learn(const DeflateSymbol* first, const DeflateSymbol* last) {
    // Whatever didn't come up may still come.
    constexpr double unseen = 0.3;
    std::array<double, deflateFormat::literalCodes> literals;
    std::array<double, deflateFormat::distanceCodes> distances;
    literals.fill(unseen);
    distances.fill(unseen);
    double literalCount = unseen * literals.size();
    double distanceCount = unseen * distances.size();
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
    for (std::size_t byte = 0; byte < m_literals.size(); ++byte)
        m_literals[byte] = cost(codeBits(literals[byte], literalCount));
    for (std::size_t length = 3; length < m_lengths.size(); ++length)
        m_lengths[length] = cost(codeBits(literals[deflateFormat::lengthCodes[length]], literalCount) +
                                 extraBitsOfLength(length));
    for (std::size_t code = 0; code < m_distances.size(); ++code)
        m_distances[code] =
            cost(codeBits(distances[code], distanceCount) + deflateFormat::distanceAlphabet.extraBits[code]);
}
