#pragma once

#include "PngRowsCache.h"
#include "PngTrialSets.h"

#include <optional>

/// Bytes of IDAT of each trial; null for one that was given up because it passed the limit or the best so
/// far.
using PngTrialSizes = std::vector<std::optional<std::size_t>>;

/// The sizes by deflating the picture for every trial with zlib. `windowBits` 8 to 15, of strategies 0 and 1.
/// All cores; throws Error, std::bad_alloc.
PngTrialSizes measurePngTrials(PngRowsCache& rows, const std::vector<PngTrial>& trials, int windowBits,
                               std::size_t limit);

/// The same sizes by following zlib's decisions for all trials of a filter together, in a fraction of the
/// time. True of the zlib 1.2 and 1.3 series; another deflate may decide differently.
PngTrialSizes foretellPngTrials(PngRowsCache& rows, const std::vector<PngTrial>& trials, int windowBits,
                                std::size_t limit);

/// How zlib is called for a trial.
struct PngDeflateParameters;
PngDeflateParameters deflateParameters(const PngTrial& trial, int windowBits);
