#include "Etc1Encoder.h"
#include "Etc1BlockEncoder.h"
#include "Etc1Format.h"
#include "SideBySide.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t blockBytes = 8;

std::size_t blocksAlong(int side) { return side < 1 ? 0 : (static_cast<std::size_t>(side) + 3) / 4; }

/// Red in the lowest byte, then green and blue.
template <int bytesPerPixel>
std::uint32_t color(const std::uint8_t* pixel);

template <>
std::uint32_t color<3>(const std::uint8_t* pixel) {
    return static_cast<std::uint32_t>(pixel[0] | pixel[1] << 8 | pixel[2] << 16);
}

template <>
std::uint32_t color<2>(const std::uint8_t* pixel) {
    const int word = pixel[0] | pixel[1] << 8;
    const int green = word >> 5 & 0x3F;
    return static_cast<std::uint32_t>(etc1Widen5(word >> 11) | (green << 2 | green >> 4) << 8 |
                                      etc1Widen5(word & 0x1F) << 16);
}

template <int bytesPerPixel>
Etc1Block cutOut(const std::uint8_t* pixels, std::size_t rowPitch, int columns, int rows) {
    Etc1Block block;
    for (int y = 0; y < rows; ++y)
        for (int x = 0; x < columns; ++x)
            block.setPixel(x, y,
                           color<bytesPerPixel>(pixels + y * rowPitch + std::ptrdiff_t{bytesPerPixel} * x));
    return block;
}

template <int bytesPerPixel>
void encodeBlockRow(const std::uint8_t* pixels, int width, int rows, std::size_t rowPitch,
                    std::uint8_t* target) {
    const Etc1BlockEncoder encode = etc1BlockEncoders().back();
    Etc1Block last;
    for (int x = 0; x < width; x += 4, pixels += std::ptrdiff_t{4} * bytesPerPixel, target += blockBytes) {
        const int columns = std::min(width - x, 4);
        // The usual size stands as a constant, so that the compiler unrolls it.
        const Etc1Block block = columns == 4 && rows == 4
                                    ? cutOut<bytesPerPixel>(pixels, rowPitch, 4, 4)
                                    : cutOut<bytesPerPixel>(pixels, rowPitch, columns, rows);
        // The ground of a sheet is most often the same block again and again.
        if (x > 0 && block == last)
            std::memcpy(target, target - blockBytes, blockBytes);
        else
            encode(block, target);
        last = block;
    }
}

template <int bytesPerPixel>
void encodeImage(const std::uint8_t* pixels, int width, int height, std::size_t rowPitch,
                 std::uint8_t* target) {
    sideBySide(blocksAlong(height), [=](std::size_t blockRow) {
        const int rows = std::min(height - 4 * static_cast<int>(blockRow), 4);
        encodeBlockRow<bytesPerPixel>(pixels + 4 * blockRow * rowPitch, width, rows, rowPitch,
                                      target + blockRow * etc1DataSize(width, 4));
    });
}

} // namespace

std::size_t etc1DataSize(int width, int height) {
    return blocksAlong(width) * blocksAlong(height) * blockBytes;
}

int etc1EncodeImage(const std::uint8_t* pixels, int width, int height, int bytesPerPixel,
                    std::size_t rowPitch, std::uint8_t* target) {
    if (bytesPerPixel == 3)
        encodeImage<3>(pixels, width, height, rowPitch, target);
    else if (bytesPerPixel == 2)
        encodeImage<2>(pixels, width, height, rowPitch, target);
    else
        return -1;
    return 0;
}

void etc1EncodeBlock(const std::uint8_t* pixels, std::uint16_t mask, std::uint8_t* target) {
    Etc1Block block;
    for (int pixel = 0; pixel < 16; ++pixel)
        if ((mask >> pixel & 1) != 0)
            block.setPixel(pixel % 4, pixel / 4, color<3>(pixels + std::ptrdiff_t{3} * pixel));
    etc1BlockEncoders().back()(block, target);
}
