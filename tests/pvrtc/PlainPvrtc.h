#pragma once

#include <cstdint>
#include <vector>

/// Decodes PVRTC pixel by pixel, straight from the description of the format: what the decoder has to give.
std::vector<std::uint8_t> plainPvrtcDecode(const std::vector<std::uint8_t>& blocks, int width, int height,
                                           int bits);
