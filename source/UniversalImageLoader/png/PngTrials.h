#pragma once

#include "PngTrialSizes.h"

/// What a run of trials comes to.
struct PngTrialsResult {
    PngTrialSizes sizes;
    std::optional<std::size_t> best; ///< place of the winner, null if every trial passed the limit
    std::vector<std::uint8_t> idat;  ///< what zlib made of the winner
};

/// The smallest trial. Of equal ones a later one takes the place of one with strategy 0 or 1 and of no other.
std::optional<std::size_t> bestPngTrial(const std::vector<PngTrial>& trials, const PngTrialSizes& sizes);

/// Finds the way that deflates the picture best, with the result of trying one after the other, on all cores.
/// `limit`: bytes that the winner may have at most. `windowBits` as in PngOptions. Throws Error,
/// std::bad_alloc.
PngTrialsResult runPngTrials(const PngPicture& picture, const std::vector<PngTrial>& trials, int windowBits,
                             std::size_t limit);
