#pragma once

#include <array>
#include <cstdint>

/// A value for red, green and blue.
template <typename T>
using Etc1Channels = std::array<T, 3>;

/// A value for the left, right, upper and lower half of a block.
using Etc1Quad [[gnu::vector_size(16)]] = float;
using Etc1QuadIntegers [[gnu::vector_size(16)]] = std::int32_t;

/// Vectors of `count` numbers: of one quad or of several.
template <int count>
struct Etc1Vectors;

/// What every 64-bit processor has (SSE2, NEON).
template <>
struct Etc1Vectors<4> {
    using Floats = Etc1Quad;
    using Integers = Etc1QuadIntegers;

    static Floats repeated(const Etc1Quad& quad) { return quad; }
    static std::array<Etc1Quad, 1> quads(const Floats& vector) { return {vector}; }
};

/// AVX2.
template <>
struct Etc1Vectors<8> {
    using Floats [[gnu::vector_size(32)]] = float;
    using Integers [[gnu::vector_size(32)]] = std::int32_t;

    static Floats repeated(const Etc1Quad& quad) {
        return Floats{quad[0], quad[1], quad[2], quad[3], quad[0], quad[1], quad[2], quad[3]};
    }
    static std::array<Etc1Quad, 2> quads(const Floats& vector) {
        return {__builtin_shufflevector(vector, vector, 0, 1, 2, 3),
                __builtin_shufflevector(vector, vector, 4, 5, 6, 7)};
    }
};
