// The footprint scorers for processors with AVX2, for which this file alone is compiled.

#include "FootprintScoring.h"

namespace pvrtc {

void scoreFootprintAvx2(const Footprint<2>& footprint, const ScoreRequest<2>& request, Score* scores) {
    scoreFootprint(footprint, request, scores);
}

void scoreFootprintAvx2(const Footprint<4>& footprint, const ScoreRequest<4>& request, Score* scores) {
    scoreFootprint(footprint, request, scores);
}

} // namespace pvrtc
