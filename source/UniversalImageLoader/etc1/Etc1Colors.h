#pragma once

#include "Etc1Format.h"
#include "Etc1Vectors.h"

#include <cstdint>

/// The colours of the four halves, as a block stores them.
class Etc1Colors {
public:
    /// From the averages, 0 to 255. Differential if the colours of the two halves are near enough to each
    /// other.
    explicit Etc1Colors(const Etc1Channels<Etc1QuadIntegers>& averages) {
        Etc1QuadIntegers distance = {};
        for (int channel = 0; channel < 3; ++channel) {
            const Etc1QuadIntegers first = quantized(averages[channel], 5);
            const Etc1QuadIntegers second = __builtin_shufflevector(first, first, 1, 0, 3, 2);
            distance |= (second - first + 4) & ~7;
        }
        m_isDifferential = __builtin_shufflevector(distance, distance, 0, 0, 2, 2) == 0;
        for (int channel = 0; channel < 3; ++channel) {
            const Etc1QuadIntegers five = quantized(averages[channel], 5);
            const Etc1QuadIntegers four = quantized(averages[channel], 4);
            m_stored[channel] = choice(five, four);
            m_widened[channel] = choice(etc1Widen5(five), etc1Widen4(four));
        }
    }

    /// As a decoder gets them, 0 to 255.
    const Etc1Channels<Etc1QuadIntegers>& widened() const { return m_widened; }

    /// The first word of the block, without the tables.
    std::uint32_t word(bool isStacked) const {
        const int half = isStacked ? 2 : 0;
        const bool isDifferential = m_isDifferential[half] != 0;
        std::uint32_t word = isStacked ? etc1FlipBit : 0;
        word |= isDifferential ? etc1DifferentialBit : 0;
        for (int channel = 0; channel < 3; ++channel) {
            const int first = m_stored[channel][half];
            const int second = m_stored[channel][half + 1];
            const int byte = isDifferential ? first << 3 | ((second - first) & 7) : first << 4 | second;
            word |= static_cast<std::uint32_t>(byte) << etc1ColorShift(channel);
        }
        return word;
    }

private:
    /// value * top / 255 with the top value of so many bits, rounded.
    static Etc1QuadIntegers quantized(const Etc1QuadIntegers& values, int bits) {
        const Etc1QuadIntegers products = (values << bits) - values;
        return ((products >> 8) + products + 128) >> 8;
    }

    Etc1QuadIntegers choice(const Etc1QuadIntegers& differential, const Etc1QuadIntegers& individual) const {
        return (m_isDifferential & differential) | (~m_isDifferential & individual);
    }

    Etc1QuadIntegers m_isDifferential; ///< -1 or 0
    Etc1Channels<Etc1QuadIntegers> m_stored;
    Etc1Channels<Etc1QuadIntegers> m_widened;
};
