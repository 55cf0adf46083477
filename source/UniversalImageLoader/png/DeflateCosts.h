#pragma once

#include "DeflateFormat.h"
#include "DeflateSymbols.h"

/// What symbols will cost, in sixteenths of a bit, by what the last ones would have cost with the best trees.
class DeflateCosts {
public:
    /// Fits filtered rows, where small differences are frequent.
    DeflateCosts();

    /// Takes the costs from symbols, first included, last not.
    void learn(const DeflateSymbol* first, const DeflateSymbol* last);

    int literal(std::uint8_t byte) const { return m_literals[byte]; }
    int match(std::size_t length, std::size_t distance) const {
        return m_lengths[length] + m_distances[deflateFormat::distanceCode(distance)];
    }

private:
    std::array<std::uint16_t, 256> m_literals;
    std::array<std::uint16_t, deflateFormat::longestMatch + 1> m_lengths;
    std::array<std::uint16_t, deflateFormat::distanceCodes> m_distances;
};
