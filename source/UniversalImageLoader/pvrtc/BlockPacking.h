#pragma once

#include "BlockGrid.h"
#include "WorkingImage.h"

namespace pvrtc {

/// The data of the picture with the colours and modes of the records: works out the final modulation.
template <int Bits>
std::vector<std::uint8_t> packBlocks(const WorkingImage& image, const BlockGrid& grid);

} // namespace pvrtc
