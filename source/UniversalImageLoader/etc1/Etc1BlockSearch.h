#pragma once

#include "Etc1Block.h"
#include "Etc1Colors.h"

#include <cstring>

/// The best tables and modifiers of a block, in vectors of `count` numbers. All four halves are worked on at
/// once, a lane each, and as many pixels or tables as there are quads in a vector.
///
/// The error of a pixel is the sum over the channels of weight * (difference - offset)^2, with `difference`
/// from its half's colour to the pixel and `offset` from there to the modified colour: the modifier, as far
/// as the channel has room for it. Multiplied out, it is weight * difference^2, which is the same for all
/// tables and modifiers, plus
///     weight * offset^2 - 2 * weight * difference * offset.
/// These are integers, and floats hold them exactly, in whatever steps they are added up: each is below 2^24.
/// chooseTables() tells of the one exception.
template <int count>
class Etc1BlockSearch {
    using Vectors = Etc1Vectors<count>;
    using Floats = typename Vectors::Floats;
    using Integers = typename Vectors::Integers;
    using Quad = Etc1Quad;
    using QuadIntegers = Etc1QuadIntegers;
    /// A value for each pixel of each half, in the order of Etc1Block.
    using Pixels = std::array<Floats, Etc1Block::size / count>;

public:
    explicit Etc1BlockSearch(const Etc1Block& block) : m_colors(averages(block)) {
        for (int channel = 0; channel < 3; ++channel) {
            m_below[channel] = Vectors::repeated(__builtin_convertvector(m_colors.widened()[channel], Quad));
            m_above[channel] = 255 - m_below[channel];
        }
        chooseTables(setDifferences(block));
    }

    /// The block in 8 bytes.
    void store(std::uint8_t* target) const {
        const QuadIntegers errors = m_choice >> 3;
        const QuadIntegers tables = m_choice & 7;
        const bool isStacked = errors[2] + errors[3] < errors[0] + errors[1];
        std::uint32_t word = m_colors.word(isStacked);
        for (int half = 0; half < 2; ++half)
            word |= static_cast<std::uint32_t>(tables[(isStacked ? 2 : 0) + half]) << etc1TableShifts[half];
        storeWord(word, target);
        storeWord(indices(tables, isStacked), target + 4);
    }

private:
    /// What the four modifiers of some tables do to the halves' colours, by the index of a pixel.
    struct Modified {
        std::array<Etc1Channels<Floats>, 4> offsets; ///< without their sign
        std::array<Floats, 4> constants;             ///< sums of weight * offset^2

        Modified(const Etc1BlockSearch& search, const Floats& small, const Floats& large) {
            for (int index = 0; index < 4; ++index) {
                const Etc1Channels<Floats>& room = index < 2 ? search.m_above : search.m_below;
                constants[index] = Floats{};
                for (int channel = 0; channel < 3; ++channel) {
                    const Floats offset = minimum(index % 2 == 0 ? small : large, room[channel]);
                    offsets[index][channel] = offset;
                    constants[index] += weights[channel] * (offset * offset);
                }
            }
        }

        /// Errors of a pixel, less the square of its difference.
        std::array<Floats, 4> errors(const Etc1Channels<Floats>& factors) const {
            std::array<Floats, 4> result = constants;
            for (int channel = 0; channel < 3; ++channel) {
                for (int index = 0; index < 2; ++index)
                    result[index] += factors[channel] * offsets[index][channel];
                for (int index = 2; index < 4; ++index)
                    result[index] -= factors[channel] * offsets[index][channel];
            }
            return result;
        }
    };

    /// The divisor is 8, however many pixels count.
    static Etc1Channels<QuadIntegers> averages(const Etc1Block& block) {
        Etc1Channels<Floats> totals = {};
        for (int i = 0; i < Etc1Block::size; i += count)
            for (int channel = 0; channel < 3; ++channel)
                totals[channel] += values(load<Integers>(block.pixels(), i), channel);
        Etc1Channels<QuadIntegers> result;
        for (int channel = 0; channel < 3; ++channel)
            result[channel] = (__builtin_convertvector(sums(totals[channel]), QuadIntegers) + 4) >> 3;
        return result;
    }

    /// Returns the sums of weight * difference^2.
    Quad setDifferences(const Etc1Block& block) {
        Floats squares = {};
        Floats counts = {};
        for (int i = 0; i < Etc1Block::size / count; ++i) {
            const Integers pixels = load<Integers>(block.pixels(), count * i);
            m_isValid[i] = pixels >> 31;
            counts -= __builtin_convertvector(m_isValid[i], Floats);
            m_brightness[i] = Floats{};
            for (int channel = 0; channel < 3; ++channel) {
                const Floats difference = masked(values(pixels, channel) - m_below[channel], m_isValid[i]);
                const Floats weighted = weights[channel] * difference;
                m_factors[channel][i] = -2 * weighted;
                m_brightness[i] += weighted;
                squares += weighted * difference;
            }
        }
        m_missing = Vectors::repeated(8 - sums(counts));
        return sums(squares);
    }

    /// 8 * error + table is what is compared: the lowest one belongs to the first table of the lowest error.
    /// As a base colour is about the average of its half, squares and the lowest error are below 2^21. So the
    /// lowest value is exact; rounding, where there is any, can't bring another one below it.
    void chooseTables(const Quad& squares) {
        Quad best = Quad{} + 0x1p30F; // higher than any
        for (int i = 0; i < tableLanes; i += count) {
            // The test is worth its time before every second table.
            if (i > 0 && i % 8 == 0 && !canReach(smallModifiers[i], best))
                break;
            const Floats small = load<Floats>(smallModifiers, i);
            const Floats large = load<Floats>(largeModifiers, i);
            const Floats errors = hasRoom(largeModifiers[i + count - 1]) ? unclampedErrors(small, large)
                                                                         : clampedErrors(small, large);
            const Quad choice = 8 * squares + lowest(8 * errors + load<Floats>(tableNumbers, i));
            best = choice < best ? choice : best;
        }
        m_choice = __builtin_convertvector(best, QuadIntegers);
    }

    /// Errors of the halves by tables, less the squares.
    Floats clampedErrors(const Floats& small, const Floats& large) const {
        const Modified modified(*this, small, large);
        // Pixels that don't count have the difference 0.
        Floats total = -m_missing * lowest(modified.constants);
#pragma GCC unroll 8
        for (int pixel = 0; pixel < 8; ++pixel)
            total += lowest(modified.errors({repeated(m_factors[0], pixel), repeated(m_factors[1], pixel),
                                             repeated(m_factors[2], pixel)}));
        return total;
    }

    /// The same if no channel gets clamped. The offsets are the modifier then and the weights add up to 10,
    /// so that the error is 10 * modifier^2 - 2 * modifier * brightness, and the better sign that of the
    /// brightness.
    Floats unclampedErrors(const Floats& small, const Floats& large) const {
        const Floats smallConstant = 10 * small * small;
        const Floats largeConstant = 10 * large * large;
        Floats total = -m_missing * smallConstant;
        Pixels brightness;
        for (std::size_t i = 0; i < brightness.size(); ++i)
            brightness[i] = 2 * maximum(m_brightness[i], -m_brightness[i]);
#pragma GCC unroll 8
        for (int pixel = 0; pixel < 8; ++pixel) {
            const Floats amount = repeated(brightness, pixel);
            total += minimum(smallConstant - small * amount, largeConstant - large * amount);
        }
        return total;
    }

    bool hasRoom(float modifier) const {
        Floats room = minimum(m_below[0], m_above[0]);
        for (int channel = 1; channel < 3; ++channel)
            room = minimum(room, minimum(m_below[channel], m_above[channel]));
        return isAll(Vectors::quads(room).front() >= modifier);
    }

    /// Whether a table with no smaller modifiers might give a half a lower error than its best one up to now.
    ///
    /// Such a table moves the brightness at least by `up` or `down`. Where that is too far, by some `excess`,
    /// the weighted sum of the channels' deviations is no less than it, and so the weighted sum of their
    /// squares no less than excess^2 / 10 (Cauchy-Schwarz inequality).
    bool canReach(float modifier, const Quad& best) const {
        Floats up = {};
        Floats down = {};
        for (int channel = 0; channel < 3; ++channel) {
            up += weights[channel] * minimum(Floats{} + modifier, m_above[channel]);
            down += weights[channel] * minimum(Floats{} + modifier, m_below[channel]);
        }
        Floats total = {};
        for (std::size_t i = 0; i < m_brightness.size(); ++i) {
            const Floats excess = maximum(minimum(up - m_brightness[i], down + m_brightness[i]), Floats{});
            total += masked(excess * excess, m_isValid[i]);
        }
        return !isAll(8 * sums(total) >= 10 * best);
    }

    /// The second word of the block.
    std::uint32_t indices(const QuadIntegers& tables, bool isStacked) const {
        Quad small;
        Quad large;
        for (int half = 0; half < 4; ++half) {
            small[half] = smallModifiers[4 * tables[half]];
            large[half] = largeModifiers[4 * tables[half]];
        }
        const Modified modified(*this, Vectors::repeated(small), Vectors::repeated(large));
        Integers bits = {};
        for (std::size_t i = 0; i < m_isValid.size(); ++i) {
            const auto [up, upLarge, down, downLarge] =
                modified.errors({m_factors[0][i], m_factors[1][i], m_factors[2][i]});
            // The first of the lowest.
            const Integers isDown = isNegative(minimum(down, downLarge) - minimum(up, upLarge));
            const Integers isLarge =
                (isDown & isNegative(downLarge - down)) | (~isDown & isNegative(upLarge - up));
            const Integers bit = load<Integers>(indexBits, static_cast<int>(i) * count);
            bits |= m_isValid[i] & ((isDown & bit << 16) | (isLarge & bit));
        }
        std::uint32_t word = 0;
        for (int i = isStacked ? 2 : 0; i < count; i += 4)
            word |= static_cast<std::uint32_t>(bits[i] | bits[i + 1]);
        return word;
    }

    static void storeWord(std::uint32_t word, std::uint8_t* target) {
        for (int i = 0; i < 4; ++i)
            target[i] = static_cast<std::uint8_t>(word >> (24 - 8 * i));
    }

    // --- Vectors ---

    static Floats minimum(const Floats& a, const Floats& b) { return a < b ? a : b; }
    static Floats maximum(const Floats& a, const Floats& b) { return b < a ? a : b; }
    static Floats lowest(const std::array<Floats, 4>& a) {
        return minimum(minimum(a[0], a[1]), minimum(a[2], a[3]));
    }
    static Integers isNegative(const Floats& a) { return reinterpret_cast<Integers>(a) >> 31; }
    static Floats masked(const Floats& a, const Integers& mask) {
        return reinterpret_cast<Floats>(reinterpret_cast<Integers>(a) & mask);
    }
    static Floats values(const Integers& pixels, int channel) {
        return __builtin_convertvector(pixels >> (8 * channel) & 0xFF, Floats);
    }

    template <typename Vector, typename Numbers>
    static Vector load(const Numbers& numbers, int place) {
        Vector result;
        std::memcpy(&result, &numbers[place], sizeof result);
        return result;
    }
    static Floats repeated(const Pixels& values, int pixel) {
        Quad quad;
        std::memcpy(&quad, reinterpret_cast<const char*>(values.data()) + sizeof quad * pixel, sizeof quad);
        return Vectors::repeated(quad);
    }

    static Quad sums(const Floats& a) {
        Quad result = {};
        for (const Quad& quad : Vectors::quads(a))
            result += quad;
        return result;
    }
    static Quad lowest(const Floats& a) {
        const auto quads = Vectors::quads(a);
        Quad result = quads.front();
        for (const Quad& quad : quads)
            result = quad < result ? quad : result;
        return result;
    }
    static bool isAll(const QuadIntegers& a) { return ((a[0] & a[1]) & (a[2] & a[3])) != 0; }

    // --- Constants ---

    static constexpr int tableLanes = 4 * static_cast<int>(etc1Tables.size());
    static constexpr Etc1Channels<float> weights = {3, 6, 1};

    /// A value of each table, for the four halves.
    template <typename Value>
    static constexpr std::array<float, tableLanes> ofTables(Value value) {
        std::array<float, tableLanes> result = {};
        for (int i = 0; i < tableLanes; ++i)
            result[i] = static_cast<float>(value(i / 4));
        return result;
    }
    static constexpr auto smallModifiers = ofTables([](int table) { return etc1Tables[table].small; });
    static constexpr auto largeModifiers = ofTables([](int table) { return etc1Tables[table].large; });
    static constexpr auto tableNumbers = ofTables([](int table) { return table; });

    /// In the order of Etc1Block.
    static constexpr std::array<std::uint32_t, Etc1Block::size> makeIndexBits() {
        std::array<std::uint32_t, Etc1Block::size> result = {};
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 4; ++x)
                result[Etc1Block::columnPlace(x, y)] = result[Etc1Block::rowPlace(x, y)] =
                    1U << etc1IndexShift(x, y);
        return result;
    }
    static constexpr auto indexBits = makeIndexBits();

    Etc1Colors m_colors;
    Etc1Channels<Floats> m_below;                            ///< room below the colours, which is their value
    Etc1Channels<Floats> m_above;                            ///< room above them
    std::array<Integers, Etc1Block::size / count> m_isValid; ///< -1 for pixels that count, else 0
    Floats m_missing;                                        ///< numbers of pixels that don't count
    // Of pixels that don't count: 0.
    Etc1Channels<Pixels> m_factors; ///< -2 * weight * difference
    Pixels m_brightness;            ///< sums over the channels of weight * difference
    QuadIntegers m_choice;          ///< 8 * error + table
};
