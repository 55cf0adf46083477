#include "PngTrials.h"

#include "PngDeflate.h"

#include <algorithm>

std::optional<std::size_t> bestPngTrial(const std::vector<PngTrial>& trials, const PngTrialSizes& sizes) {
    std::optional<std::size_t> best;
    for (std::size_t place = 0; place < trials.size(); ++place) {
        if (!sizes[place])
            continue;
        if (!best || *sizes[place] < *sizes[*best] ||
            (*sizes[place] == *sizes[*best] && trials[*best].strategy < 2))
            best = place;
    }
    return best;
}

PngTrialsResult runPngTrials(const PngPicture& picture, const std::vector<PngTrial>& trials, int windowBits,
                             std::size_t limit) {
    PngRowsCache rows(picture);
    windowBits = windowBits > 0 ? std::clamp(windowBits, 8, 15) : 15;
    const std::atomic<std::size_t> unchangedLimit{limit};
    const auto deflated = [&](std::size_t place) {
        return deflateRows(*rows.rows(trials[place].filter), deflateParameters(trials[place], windowBits),
                           unchangedLimit);
    };
    PngTrialsResult result;
    if (trials.size() == 1) {
        result.sizes.resize(1);
        if (auto idat = deflated(0)) {
            result.best = 0;
            result.sizes[0] = idat->size();
            result.idat = std::move(*idat);
        }
        return result;
    }
    result.sizes = foretellPngTrials(rows, trials, windowBits, limit);
    result.best = bestPngTrial(trials, result.sizes);
    std::optional<std::vector<std::uint8_t>> idat;
    if (result.best)
        idat = deflated(*result.best);
    // The library here may be one that decides differently; then every trial has to be made.
    if (result.best && (!idat || idat->size() != *result.sizes[*result.best])) {
        result.sizes = measurePngTrials(rows, trials, windowBits, limit);
        result.best = bestPngTrial(trials, result.sizes);
        if (result.best)
            idat = deflated(*result.best);
    }
    if (result.best)
        result.idat = std::move(*idat);
    return result;
}
