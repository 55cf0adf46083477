#include "FootprintScoring.h"

namespace pvrtc {

void scoreFootprintPlain(const Footprint<2>& footprint, const ScoreRequest<2>& request, Score* scores) {
    scoreFootprint(footprint, request, scores);
}

void scoreFootprintPlain(const Footprint<4>& footprint, const ScoreRequest<4>& request, Score* scores) {
    scoreFootprint(footprint, request, scores);
}

template <int Bits>
FootprintScorer<Bits> footprintScorer() {
#if defined(PVRTC_AVX2)
    if (__builtin_cpu_supports("avx2"))
        return scoreFootprintAvx2;
#endif
    return scoreFootprintPlain;
}

template FootprintScorer<2> footprintScorer<2>();
template FootprintScorer<4> footprintScorer<4>();

} // namespace pvrtc
