#pragma once

#include <cstdint>

/// Decodes PVRTC (first version, blocks in Morton order), any bytes of which are valid, on all cores.
///
/// Sides are powers of two, at least a block (8 or 4 wide, 4 high; smaller ones are the caller's to cut from
/// a picture of whole blocks). `blocks`: width * height * bits / 8 bytes with `bits` 2 or 4; `rgba` takes
/// width * height * 4 bytes.
void pvrtcDecode(const std::uint8_t* blocks, int width, int height, int bits, std::uint8_t* rgba);
