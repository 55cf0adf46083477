#pragma once

#include <cstddef>
#include <cstdint>

/// ETC1 (OES_compressed_ETC1_RGB8_texture): blocks of 4 x 4 pixels in 8 bytes.
///
/// The colours of a block are the averages of its halves; of layouts, tables and modifiers all are tried, and
/// the first of the lowest error stays. A squared difference of red counts 3 times, of green 6 times, of blue
/// once.

/// Bytes of the blocks of a picture, whose sides are rounded up to whole blocks; 0 if a side is below 1.
std::size_t etc1DataSize(int width, int height);

/// Encodes a picture on all cores, block row by block row from the top left.
/// `pixels`: `bytesPerPixel` 3 is red, green, blue, and 2 RGB565 as a little-endian word; a row begins
/// `rowPitch` bytes behind the last one. `target` takes etc1DataSize(width, height) bytes. 0, or -1 for any
/// other bytes a pixel: then nothing is written.
int etc1EncodeImage(const std::uint8_t* pixels, int width, int height, int bytesPerPixel,
                    std::size_t rowPitch, std::uint8_t* target);

/// Encodes 4 x 4 pixels of red, green, blue, row by row. Bit 4 * y + x of `mask` tells that the pixel counts.
/// `target` takes 8 bytes.
void etc1EncodeBlock(const std::uint8_t* pixels, std::uint16_t mask, std::uint8_t* target);
