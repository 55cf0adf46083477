#pragma once

#include "Option.h"

/// All options, in the order in which they are processed: where two set the same value, the later row wins,
/// wherever they stand on the command line. Made at first use, on the main thread.
const std::vector<Option>& optionTable();
