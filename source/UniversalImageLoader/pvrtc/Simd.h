#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

/// Vectors of the compiler's extension, and the few operations on them that have no operator.
/// Everything is static: files that are compiled for different processors must not share a copy.
namespace pvrtc {

using Int16x8 [[gnu::vector_size(16)]] = std::int16_t;
using Int32x4 [[gnu::vector_size(16)]] = std::int32_t;
using Float4 [[gnu::vector_size(16)]] = float;

template <class Vector, class Element>
[[gnu::always_inline]] static inline Vector load(const Element* from) {
    Vector vector;
    __builtin_memcpy(&vector, from, sizeof vector);
    return vector;
}

template <class Vector, class Element>
[[gnu::always_inline]] static inline void store(Element* to, Vector vector) {
    __builtin_memcpy(to, &vector, sizeof vector);
}

/// Products of the elements, sums of two neighbours each.
[[gnu::always_inline]] static inline Int32x4 multiplyAddPairs(Int16x8 a, Int16x8 b) {
#if defined(__SSE2__)
    return reinterpret_cast<Int32x4>(
        _mm_madd_epi16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
#else
    const auto evenA = __builtin_convertvector(__builtin_shufflevector(a, a, 0, 2, 4, 6), Int32x4);
    const auto oddA = __builtin_convertvector(__builtin_shufflevector(a, a, 1, 3, 5, 7), Int32x4);
    const auto evenB = __builtin_convertvector(__builtin_shufflevector(b, b, 0, 2, 4, 6), Int32x4);
    const auto oddB = __builtin_convertvector(__builtin_shufflevector(b, b, 1, 3, 5, 7), Int32x4);
    return evenA * evenB + oddA * oddB;
#endif
}

/// Elements that fit 16 bits.
[[gnu::always_inline]] static inline Int16x8 narrowed(Int32x4 first, Int32x4 second) {
#if defined(__SSE2__)
    return reinterpret_cast<Int16x8>(
        _mm_packs_epi32(reinterpret_cast<__m128i>(first), reinterpret_cast<__m128i>(second)));
#else
    return __builtin_convertvector(__builtin_shufflevector(first, second, 0, 1, 2, 3, 4, 5, 6, 7), Int16x8);
#endif
}

/// The sum of the elements of each of four vectors.
[[gnu::always_inline]] static inline Int32x4 sums(Int32x4 a, Int32x4 b, Int32x4 c, Int32x4 d) {
    const Int32x4 ab = __builtin_shufflevector(a, b, 0, 4, 1, 5) + __builtin_shufflevector(a, b, 2, 6, 3, 7);
    const Int32x4 cd = __builtin_shufflevector(c, d, 0, 4, 1, 5) + __builtin_shufflevector(c, d, 2, 6, 3, 7);
    return __builtin_shufflevector(ab, cd, 0, 1, 4, 5) + __builtin_shufflevector(ab, cd, 2, 3, 6, 7);
}

/// Twice four elements from 0 to 255.
[[gnu::always_inline]] static inline void storeBytes(void* to, Int32x4 first, Int32x4 second) {
#if defined(__SSE2__)
    const __m128i words =
        _mm_packs_epi32(reinterpret_cast<__m128i>(first), reinterpret_cast<__m128i>(second));
    _mm_storel_epi64(static_cast<__m128i*>(to), _mm_packus_epi16(words, words));
#else
    auto* bytes = static_cast<std::uint8_t*>(to);
    for (int lane = 0; lane < 4; ++lane) {
        bytes[lane] = static_cast<std::uint8_t>(first[lane]);
        bytes[lane + 4] = static_cast<std::uint8_t>(second[lane]);
    }
#endif
}

/// The four bytes of a word, from the lowest on, twice.
[[gnu::always_inline]] static inline Int16x8 bytesTwice(std::uint32_t word) {
#if defined(__SSE2__)
    const __m128i once = _mm_cvtsi32_si128(static_cast<int>(word));
    return reinterpret_cast<Int16x8>(_mm_unpacklo_epi8(_mm_unpacklo_epi32(once, once), _mm_setzero_si128()));
#else
    const auto byte = [&](int place) { return static_cast<std::int16_t>(word >> 8 * place & 0xFFU); };
    return Int16x8{byte(0), byte(1), byte(2), byte(3), byte(0), byte(1), byte(2), byte(3)};
#endif
}

/// Eight elements from 0 to 255.
[[gnu::always_inline]] static inline Int16x8 loadBytes(const void* from) {
#if defined(__SSE2__)
    const __m128i bytes = _mm_loadl_epi64(static_cast<const __m128i*>(from));
    return reinterpret_cast<Int16x8>(_mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
#else
    std::uint8_t b[8];
    __builtin_memcpy(b, from, sizeof b);
    return Int16x8{b[0], b[1], b[2], b[3], b[4], b[5], b[6], b[7]};
#endif
}

/// The first or the second four of eight elements that aren't negative.
template <int Half>
[[gnu::always_inline]] static inline Float4 halfFloats(Int16x8 vector) {
    const Int16x8 none{};
    const Int16x8 wide =
        __builtin_shufflevector(vector, none, Half * 4, 8, Half * 4 + 1, 8, Half * 4 + 2, 8, Half * 4 + 3, 8);
    return __builtin_convertvector(reinterpret_cast<Int32x4>(wide), Float4);
}

[[gnu::always_inline]] static inline float dotProduct(Float4 a, Float4 b) {
    const Float4 products = a * b;
    return (products[0] + products[1]) + (products[2] + products[3]);
}

[[gnu::always_inline]] static inline Float4 squareRoots(Float4 vector) {
#if defined(__SSE2__)
    return reinterpret_cast<Float4>(_mm_sqrt_ps(reinterpret_cast<__m128>(vector)));
#else
    for (int lane = 0; lane < 4; ++lane)
        vector[lane] = __builtin_sqrtf(vector[lane]);
    return vector;
#endif
}

/// Elements of `a` where the mask is set, of `b` elsewhere.
template <class Vector, class Mask>
[[gnu::always_inline]] static inline Vector chosen(Mask mask, Vector a, Vector b) {
    return mask ? a : b;
}

} // namespace pvrtc
