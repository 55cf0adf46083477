#pragma once

#include "Etc1Block.h"

#include <cstdint>
#include <vector>

/// Encodes a block: tries both layouts of the halves, and for each half all tables and modifiers, and keeps
/// what comes first of the lowest error. `target` takes 8 bytes.
using Etc1BlockEncoder = void (*)(const Etc1Block& block, std::uint8_t* target);

/// One for each set of instructions that this processor has, the quickest last. All give the same bytes.
const std::vector<Etc1BlockEncoder>& etc1BlockEncoders();
