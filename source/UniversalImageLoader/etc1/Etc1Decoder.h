#pragma once

#include <cstddef>
#include <cstdint>

/// Decodes a picture of ETC1 blocks (OES_compressed_ETC1_RGB8_texture), on all cores. Any bytes are valid: a
/// difference of colours that leads out of the range, which the format leaves undefined, wraps around.
/// `blocks` holds etc1DataSize(width, height) bytes; `pixels` takes red, green, blue, a row `rowPitch` bytes
/// behind the last one.
void etc1DecodeImage(const std::uint8_t* blocks, int width, int height, std::uint8_t* pixels,
                     std::size_t rowPitch);
