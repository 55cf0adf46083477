#include "PngTrialSets.h"

#include "Error.h"

#include <algorithm>

namespace {

constexpr std::uint32_t bit(int value) { return std::uint32_t{1} << value; }

/// All values from the first to the last.
constexpr std::uint32_t bits(int first, int last) { return bit(last + 1) - bit(first); }

constexpr std::uint32_t legalLevels = bits(1, 9);
constexpr std::uint32_t legalStrategies = bits(0, 3);
constexpr std::uint32_t legalFilters = bits(0, 5);

struct Sets {
    std::uint32_t levels;
    std::uint32_t memories;
    std::uint32_t strategies;
    std::uint32_t filters;
};

constexpr Sets presets[] = {
    {0, 0, 0, 0},
    {0, 0, 0, 0},
    {bit(9), bit(8), legalStrategies, bit(0) | bit(5)},
    {bit(9), bits(8, 9), legalStrategies, bit(0) | bit(5)},
    {bit(9), bit(8), legalStrategies, legalFilters},
    {bit(9), bits(8, 9), legalStrategies, legalFilters},
    {bits(1, 9), bit(8), legalStrategies, legalFilters},
    {bits(1, 9), bits(8, 9), legalStrategies, legalFilters},
};

constexpr int defaultPreset = 2;

/// A preset that was asked for widens what an option gives; the default one only stands in for it.
std::uint32_t merge(const PngOptions& options, std::uint32_t given, std::uint32_t preset,
                    std::uint32_t legal) {
    if (given != 0 && (given & legal) == 0)
        throw Error(Error::TextureFile, QStringLiteral("Iteration parameter(s) out of range"));
    return ((options.optimLevel >= 0 || given == 0 ? preset : 0) | given) & legal;
}

Sets setsOf(const PngOptions& options, bool isIndexed) {
    const Sets& preset =
        presets[options.optimLevel < 0 ? defaultPreset : std::min<int>(options.optimLevel, 7)];
    Sets sets;
    sets.levels = merge(options, options.compressionLevelSet, preset.levels, legalLevels);
    sets.memories = merge(options, options.memoryLevelSet, preset.memories, legalLevels);
    sets.strategies = merge(options, options.strategySet, preset.strategies, legalStrategies);
    sets.filters = merge(options, options.filterSet, preset.filters, legalFilters);
    if (!sets.levels)
        sets.levels = bit(9);
    if (!sets.memories)
        sets.memories = bit(8);
    // The two belong together: with one of them open the picture's type decides both, so that the presets 0
    // and 1 make one trial whatever filters were given.
    if (!sets.strategies || !sets.filters) {
        sets.strategies = bit(isIndexed ? 0 : 1);
        sets.filters = bit(isIndexed ? FilterNone : FilterAdaptive);
    }
    return sets;
}

/// The levels that make a difference to a strategy.
std::uint32_t levelsFor(int strategy, std::uint32_t levels) {
    switch (strategy) {
    case 2:
        return bit(1);
    case 3:
        return bit(9);
    default:
        return levels;
    }
}

} // namespace

std::vector<PngTrial> pngTrials(const PngOptions& options, bool isIndexed) {
    const Sets sets = setsOf(options, isIndexed);
    std::vector<PngTrial> trials;
    for (int filter = 0; filter <= 5; ++filter) {
        if (!(sets.filters & bit(filter)))
            continue;
        for (int strategy = 0; strategy <= 3; ++strategy) {
            if (!(sets.strategies & bit(strategy)))
                continue;
            const std::uint32_t levels = levelsFor(strategy, sets.levels);
            for (int level = 9; level >= 1; --level)
                for (int memory = 9; memory >= 1; --memory)
                    if ((levels & bit(level)) && (sets.memories & bit(memory)))
                        trials.push_back({filter, strategy, level, memory});
        }
    }
    return trials;
}
