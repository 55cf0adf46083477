#pragma once

#include <cstdint>
#include <vector>

/// PVRTC decoded pixel by pixel straight from the format's description, for comparison: red, green, blue,
/// alpha.
std::vector<std::uint8_t> plainPvrtcDecode(const std::vector<std::uint8_t>& data, int width, int height,
                                           int bits);
