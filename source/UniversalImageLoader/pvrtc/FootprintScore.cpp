#include "FootprintScoring.h"

namespace pvrtc {

#if defined(PVRTC_AVX2)
template <int Bits>
FootprintScorer<Bits> avx2FootprintScorer();
extern template FootprintScorer<2> avx2FootprintScorer<2>();
extern template FootprintScorer<4> avx2FootprintScorer<4>();
#endif

template <int Bits>
FootprintScorer<Bits> plainFootprintScorer() {
    return scoreFootprint<Bits>;
}

template <int Bits>
FootprintScorer<Bits> footprintScorer() {
#if defined(PVRTC_AVX2)
    if (__builtin_cpu_supports("avx2"))
        return avx2FootprintScorer<Bits>();
#endif
    return plainFootprintScorer<Bits>();
}

template FootprintScorer<2> plainFootprintScorer<2>();
template FootprintScorer<4> plainFootprintScorer<4>();
template FootprintScorer<2> footprintScorer<2>();
template FootprintScorer<4> footprintScorer<4>();

} // namespace pvrtc
