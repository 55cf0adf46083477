#include "DeflateCosts.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>

namespace {

constexpr int unit = 16;

/// Logarithms to base 2 of whole numbers, in 256ths: what a library makes of them may differ in the last bits
/// from machine to machine, and files must not.
class Logarithms {
public:
    Logarithms() {
        for (std::size_t i = 0; i < m_mantissas.size(); ++i)
            m_mantissas[i] = static_cast<int>(std::lround(256 * std::log2(1 + static_cast<double>(i) / 256)));
    }
    /// `number`: 1 or more.
    int of(std::uint32_t number) const {
        const int power = std::bit_width(number) - 1;
        const std::uint64_t mantissa = (std::uint64_t{number} << 8U >> power) - 256;
        return 256 * power + m_mantissas[mantissa];
    }

private:
    std::array<int, 256> m_mantissas;
};

const Logarithms& logarithms() {
    static const Logarithms table;
    return table;
}

/// Counts are kept in tenths: whatever didn't come up may still come.
constexpr std::uint32_t unseen = 3;
constexpr std::uint32_t seen = 10;

/// Costs of a code that is used so often of so many times. No code is longer than 15 bits.
class CodeCosts {
public:
    explicit CodeCosts(std::uint32_t all) : m_all(logarithms().of(all)) {}
    int of(std::uint32_t count) const {
        return std::min((m_all - logarithms().of(count) + 8) * unit / 256, 15 * unit);
    }

private:
    int m_all;
};

int extraBitsOfLength(std::size_t length) {
    return deflateFormat::literalAlphabet.extraBits[deflateFormat::lengthCodes[length]];
}

} // namespace

DeflateCosts::DeflateCosts() {
    for (std::size_t byte = 0; byte < m_literals.size(); ++byte) {
        const auto difference = static_cast<std::uint32_t>(std::abs(static_cast<std::int8_t>(byte)));
        m_literals[byte] = static_cast<std::uint16_t>(
            byte == 0 ? 2 * unit : 3 * unit + logarithms().of(difference) * unit / 256);
    }
    m_lengths.fill(0);
    for (std::size_t length = 3; length < m_lengths.size(); ++length)
        m_lengths[length] = static_cast<std::uint16_t>((7 + extraBitsOfLength(length)) * unit);
    for (std::size_t code = 0; code < m_distances.size(); ++code)
        m_distances[code] =
            static_cast<std::uint16_t>(9 * unit / 2 + deflateFormat::distanceAlphabet.extraBits[code] * unit);
}

void DeflateCosts::learn(const DeflateSymbol* first, const DeflateSymbol* last) {
    std::array<std::uint32_t, deflateFormat::literalCodes> literals;
    std::array<std::uint32_t, deflateFormat::distanceCodes> distances;
    literals.fill(unseen);
    distances.fill(unseen);
    std::uint32_t literalCount = unseen * literals.size();
    std::uint32_t distanceCount = unseen * distances.size();
    for (; first != last; ++first) {
        literalCount += seen;
        if (first->length == 0) {
            literals[first->value] += seen;
            continue;
        }
        literals[deflateFormat::lengthCodes[first->length]] += seen;
        distances[deflateFormat::distanceCode(first->value + std::size_t{1})] += seen;
        distanceCount += seen;
    }
    const CodeCosts literalCosts(literalCount);
    for (std::size_t byte = 0; byte < m_literals.size(); ++byte)
        m_literals[byte] = static_cast<std::uint16_t>(literalCosts.of(literals[byte]));
    std::array<int, deflateFormat::shortestLengths.size()> lengths;
    for (std::size_t code = 0; code < lengths.size(); ++code)
        lengths[code] = literalCosts.of(literals[code + 257]);
    for (std::size_t length = 3; length < m_lengths.size(); ++length)
        m_lengths[length] = static_cast<std::uint16_t>(lengths[deflateFormat::lengthCodes[length] - 257U] +
                                                       extraBitsOfLength(length) * unit);
    const CodeCosts distanceCosts(distanceCount);
    for (std::size_t code = 0; code < m_distances.size(); ++code)
        m_distances[code] = static_cast<std::uint16_t>(
            distanceCosts.of(distances[code]) + deflateFormat::distanceAlphabet.extraBits[code] * unit);
}
