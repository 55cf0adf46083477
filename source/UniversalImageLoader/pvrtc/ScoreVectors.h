#pragma once

#include "Simd.h"

// The vectors that footprints are scored with: twice as long where the file is compiled for AVX2. The files
// that include this are compiled for different processors, so each has its own copy of everything.
namespace pvrtc {
namespace {

// Beside those that follow.
using pvrtc::chosen;
using pvrtc::multiplyAddPairs;
using pvrtc::narrowed;

#if defined(__AVX2__)

using Int16s [[gnu::vector_size(32)]] = std::int16_t; ///< as many as the processor takes at once
using Int32s [[gnu::vector_size(32)]] = std::int32_t;
using Int32x8 = Int32s;
using Float8 [[gnu::vector_size(32)]] = float;

[[gnu::always_inline]] inline Int32x8 joined(Int32x4 first, Int32x4 second) {
    return __builtin_shufflevector(first, second, 0, 1, 2, 3, 4, 5, 6, 7);
}
[[gnu::always_inline]] inline Int32x4 firstHalf(Int32x8 vector) {
    return __builtin_shufflevector(vector, vector, 0, 1, 2, 3);
}
[[gnu::always_inline]] inline Int32x4 secondHalf(Int32x8 vector) {
    return __builtin_shufflevector(vector, vector, 4, 5, 6, 7);
}
[[gnu::always_inline]] inline Int32x4 folded(Int32s vector) { return firstHalf(vector) + secondHalf(vector); }
[[gnu::always_inline]] inline Int32x8 widened(Int16x8 vector) {
    return __builtin_convertvector(vector, Int32x8);
}
[[gnu::always_inline]] inline Float8 toFloats(Int32x8 vector) {
    return __builtin_convertvector(vector, Float8);
}

[[gnu::always_inline]] inline Int32s multiplyAddPairs(Int16s a, Int16s b) {
    return reinterpret_cast<Int32s>(
        _mm256_madd_epi16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}

/// Sums over the four channels of the products of each lane.
[[gnu::always_inline]] inline void storeDotProducts(std::int32_t* to, const Int16s (&a)[4],
                                                    const Int16s (&b)[4]) {
    const auto low = [](Int16s x, Int16s y) {
        return __builtin_shufflevector(x, y, 0, 16, 1, 17, 2, 18, 3, 19, 8, 24, 9, 25, 10, 26, 11, 27);
    };
    const auto high = [](Int16s x, Int16s y) {
        return __builtin_shufflevector(x, y, 4, 20, 5, 21, 6, 22, 7, 23, 12, 28, 13, 29, 14, 30, 15, 31);
    };
    const Int32s outer = multiplyAddPairs(low(a[0], a[1]), low(b[0], b[1])) +
                         multiplyAddPairs(low(a[2], a[3]), low(b[2], b[3]));
    const Int32s inner = multiplyAddPairs(high(a[0], a[1]), high(b[0], b[1])) +
                         multiplyAddPairs(high(a[2], a[3]), high(b[2], b[3]));
    store(to, __builtin_shufflevector(outer, inner, 0, 1, 2, 3, 8, 9, 10, 11));
    store(to + 8, __builtin_shufflevector(outer, inner, 4, 5, 6, 7, 12, 13, 14, 15));
}

#else

/// Two vectors side by side.
template <class Half>
struct Doubled {
    Half first;
    Half second;
};
using Int16s = Int16x8;
using Int32s = Int32x4;
using Int32x8 = Doubled<Int32x4>;
using Float8 = Doubled<Float4>;

#define DOUBLED_OPERATOR(sign)                                                                               \
    template <class Half>                                                                                    \
    [[gnu::always_inline]] inline auto operator sign(Doubled<Half> a, Doubled<Half> b) {                     \
        return Doubled<decltype(a.first sign b.first)>{a.first sign b.first, a.second sign b.second};        \
    }                                                                                                        \
    template <class Half, class Scalar>                                                                      \
    [[gnu::always_inline]] inline auto operator sign(Doubled<Half> a, Scalar b) {                            \
        return Doubled<decltype(a.first sign b)>{a.first sign b, a.second sign b};                           \
    }
DOUBLED_OPERATOR(+)
DOUBLED_OPERATOR(-)
DOUBLED_OPERATOR(*)
DOUBLED_OPERATOR(&)
DOUBLED_OPERATOR(<<)
DOUBLED_OPERATOR(<)
DOUBLED_OPERATOR(>)
DOUBLED_OPERATOR(<=)
DOUBLED_OPERATOR(>=)
#undef DOUBLED_OPERATOR

[[gnu::always_inline]] inline Int32x8 joined(Int32x4 first, Int32x4 second) { return {first, second}; }
[[gnu::always_inline]] inline Int32x4 firstHalf(Int32x8 vector) { return vector.first; }
[[gnu::always_inline]] inline Int32x4 secondHalf(Int32x8 vector) { return vector.second; }
[[gnu::always_inline]] inline Int32x4 folded(Int32s vector) { return vector; }
[[gnu::always_inline]] inline Int32x8 widened(Int16x8 vector) {
    const Int16x8 sign = vector < 0;
    return {reinterpret_cast<Int32x4>(__builtin_shufflevector(vector, sign, 0, 8, 1, 9, 2, 10, 3, 11)),
            reinterpret_cast<Int32x4>(__builtin_shufflevector(vector, sign, 4, 12, 5, 13, 6, 14, 7, 15))};
}
[[gnu::always_inline]] inline Float8 toFloats(Int32x8 vector) {
    return {__builtin_convertvector(vector.first, Float4), __builtin_convertvector(vector.second, Float4)};
}
[[gnu::always_inline]] inline Int32x8 chosen(Int32x8 mask, Int32x8 a, Int32x8 b) {
    return {chosen(mask.first, a.first, b.first), chosen(mask.second, a.second, b.second)};
}

#endif

/// Elements that fit 16 bits.
[[gnu::always_inline]] inline Int16x8 narrowed(Int32x8 vector) {
    return narrowed(firstHalf(vector), secondHalf(vector));
}

/// Sums over the four channels of the products of each lane.
[[gnu::always_inline]] inline Int32x8 dotProducts(const Int16x8 (&a)[4], const Int16x8 (&b)[4]) {
    const auto low = [](Int16x8 x, Int16x8 y) {
        return __builtin_shufflevector(x, y, 0, 8, 1, 9, 2, 10, 3, 11);
    };
    const auto high = [](Int16x8 x, Int16x8 y) {
        return __builtin_shufflevector(x, y, 4, 12, 5, 13, 6, 14, 7, 15);
    };
    return joined(multiplyAddPairs(low(a[0], a[1]), low(b[0], b[1])) +
                      multiplyAddPairs(low(a[2], a[3]), low(b[2], b[3])),
                  multiplyAddPairs(high(a[0], a[1]), high(b[0], b[1])) +
                      multiplyAddPairs(high(a[2], a[3]), high(b[2], b[3])));
}
[[maybe_unused, gnu::always_inline]] inline void storeDotProducts(std::int32_t* to, const Int16x8 (&a)[4],
                                                                  const Int16x8 (&b)[4]) {
    store(to, dotProducts(a, b));
}

} // namespace
} // namespace pvrtc
