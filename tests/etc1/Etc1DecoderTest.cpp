#include "Etc1Decoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <vector>

namespace {

using Color = std::array<int, 3>;

constexpr std::size_t gap = 2;

/// Row by row, with a gap between the rows.
std::vector<std::uint8_t> decode(const std::vector<std::uint8_t>& blocks, int width, int height) {
    const std::size_t pitch = 3 * width + gap;
    std::vector<std::uint8_t> pixels(pitch * height, 0xAB);
    etc1DecodeImage(blocks.data(), width, height, pixels.data(), pitch);
    return pixels;
}

Color pixel(const std::vector<std::uint8_t>& pixels, int width, int x, int y) {
    const std::uint8_t* place = &pixels[(3 * width + gap) * y + 3 * x];
    return {place[0], place[1], place[2]};
}

} // namespace

TEST(Etc1DecoderTest, individualHalvesSideBySide) {
    // Left: 0x11, 0x88, 0xFF and table 2 (9, 29); right: 0x22, 0x00, 0xEE and table 7 (47, 183).
    // Low bits of the indices: (0, 1), (3, 3). High bits: (0, 2), (3, 0) and (3, 3).
    const std::vector<std::uint8_t> block = {0x12, 0x80, 0xFE, 2 << 5 | 7 << 2 | 0, 0x90, 0x04, 0x80, 0x02};
    const auto pixels = decode(block, 4, 4);
    EXPECT_EQ(pixel(pixels, 4, 0, 0), (Color{17 + 9, 136 + 9, 255}));
    EXPECT_EQ(pixel(pixels, 4, 0, 1), (Color{17 + 29, 136 + 29, 255}));
    EXPECT_EQ(pixel(pixels, 4, 0, 2), (Color{17 - 9, 136 - 9, 255 - 9}));
    EXPECT_EQ(pixel(pixels, 4, 1, 3), (Color{17 + 9, 136 + 9, 255}));
    EXPECT_EQ(pixel(pixels, 4, 2, 0), (Color{34 + 47, 47, 255}));
    EXPECT_EQ(pixel(pixels, 4, 3, 0), (Color{0, 0, 238 - 47}));
    EXPECT_EQ(pixel(pixels, 4, 3, 3), (Color{0, 0, 238 - 183}));
}

TEST(Etc1DecoderTest, stackedHalvesWithADifference) {
    // Upper: 10, 20, 31 of 31 and table 0 (2, 8); lower: 10 + 3, 20 - 4, 31 - 1 and table 3 (13, 42).
    // Low bits of the indices: (1, 0), (1, 2). High bits: (1, 1), (1, 2).
    const std::vector<std::uint8_t> block = {10 << 3 | 3, 20 << 3 | 4, 31 << 3 | 7, 0 << 5 | 3 << 2 | 3,
                                             0x00,        0x60,        0x00,        0x50};
    const auto pixels = decode(block, 4, 4);
    EXPECT_EQ(pixel(pixels, 4, 0, 0), (Color{82 + 2, 165 + 2, 255}));
    EXPECT_EQ(pixel(pixels, 4, 1, 0), (Color{82 + 8, 165 + 8, 255}));
    EXPECT_EQ(pixel(pixels, 4, 1, 1), (Color{82 - 2, 165 - 2, 255 - 2}));
    EXPECT_EQ(pixel(pixels, 4, 1, 2), (Color{107 - 42, 132 - 42, 247 - 42}));
    EXPECT_EQ(pixel(pixels, 4, 3, 3), (Color{107 + 13, 132 + 13, 255}));
}

TEST(Etc1DecoderTest, colorsOutOfRangeWrapAround) {
    const auto pixels = decode({30 << 3 | 3, 1 << 3 | 4, 0, 2, 0, 0, 0, 0}, 4, 4);
    EXPECT_EQ(pixel(pixels, 4, 0, 0), (Color{247 + 2, 8 + 2, 2}));
    EXPECT_EQ(pixel(pixels, 4, 2, 0), (Color{8 + 2, 239 + 2, 2}));
}

TEST(Etc1DecoderTest, picturesEndInsideABlock) {
    std::vector<std::uint8_t> blocks(32);
    for (int block = 0; block < 4; ++block)
        for (int channel = 0; channel < 3; ++channel)
            blocks[8 * block + channel] = static_cast<std::uint8_t>(0x11 * (block + 1));
    const auto pixels = decode(blocks, 5, 6);
    EXPECT_EQ(pixel(pixels, 5, 3, 3), (Color{19, 19, 19}));
    EXPECT_EQ(pixel(pixels, 5, 4, 0), (Color{36, 36, 36}));
    EXPECT_EQ(pixel(pixels, 5, 0, 4), (Color{53, 53, 53}));
    EXPECT_EQ(pixel(pixels, 5, 4, 5), (Color{70, 70, 70}));
    for (int y = 0; y < 6; ++y)
        for (std::size_t i = 0; i < gap; ++i)
            EXPECT_EQ(pixels[(15 + gap) * y + 15 + i], 0xAB);
}
