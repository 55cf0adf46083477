#pragma once

#include <cstdint>
#include <vector>

/// Encodes a picture as PVRTC (first version, blocks in Morton order), on all cores. The result is the same
/// on any number of them and on any processor.
///
/// `rgba`: red, green, blue, alpha, 8 bits each, row by row from the top without gaps. All four channels
/// count alike. `bits` a pixel: 2 or 4.
///
/// Returns width * height * bits / 8 bytes, or none if a side is above 4096 or no multiple of a block's (8 or
/// 4 wide, 4 high). Beside picture and result it takes some 300 MiB for 4096 x 4096 pixels with 4 bits, 200
/// MiB with 2 bits.
std::vector<std::uint8_t> pvrtcEncode(const std::uint8_t* rgba, int width, int height, int bits);
