#pragma once

#include "PngLog.h"
#include "PngOptions.h"
#include "PngPicture.h"

/// A palette picture with no more entries than its pixels need, and with as few bits an index as they allow,
/// or without a palette if all its colours are grey and the index takes a byte anyway. `mask` of
/// PngReduction. A palette that is too short is made longer, or an Error if `options.fix` is off. True if
/// anything changed.
bool reducePalette(PngPicture& picture, unsigned mask, const PngOptions& options, PngLog& log);
