// The footprint scorer for processors with AVX2, for which this file alone is compiled.

#include "FootprintScoring.h"

namespace pvrtc {

template <int Bits>
FootprintScorer<Bits> avx2FootprintScorer() {
    return scoreFootprint<Bits>;
}

template FootprintScorer<2> avx2FootprintScorer<2>();
template FootprintScorer<4> avx2FootprintScorer<4>();

} // namespace pvrtc
