#pragma once

#include "FootprintStatistics.h"
#include "UniformColors.h"

namespace pvrtc {

/// What the first sweep finds for a block to start from: pairs of colours, 0 to 255, along the main axes of
/// the three weightings and the extremes of the channels.
struct StartEnds {
    enum { ChannelExtremes = WeightingCount, Count };
    std::uint32_t ends[Count][2]; ///< low and high, red in the lowest byte
};

/// First sweep: sets what the block's record keeps of its footprint, and returns what the second sweep needs.
template <int Bits>
StartEnds analyseFootprint(const PixelWindow<Bits>& window, BlockRecord& record);

/// Second sweep: sets a block's start colours of all modes. `around`: what the first sweep found for the 3 x
/// 3 blocks around it, row by row, itself in the middle.
template <int Bits>
void setUpStandardRepStarts(const StartEnds* const (&around)[9], const UniformColors& uniformColors,
                            BlockRecord& record);

} // namespace pvrtc
