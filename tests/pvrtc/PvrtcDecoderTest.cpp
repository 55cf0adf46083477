#include "PvrtcDecoder.h"
#include "PlainPvrtc.h"
#include "PvrtcFormat.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using Pixel = std::array<int, 4>;

constexpr std::uint32_t opaqueBlack = 0x8000;
constexpr std::uint32_t opaqueWhite = 0xFFFF;
constexpr std::uint32_t blackToWhite = opaqueBlack | opaqueWhite << 16;

void append(std::vector<std::uint8_t>& data, std::uint32_t modulation, std::uint32_t colors) {
    for (const std::uint32_t word : {modulation, colors})
        for (int byte = 0; byte < 4; ++byte)
            data.push_back(static_cast<std::uint8_t>(word >> 8 * byte));
}

class Decoded {
public:
    Decoded(const std::vector<std::uint8_t>& blocks, int width, int height, int bits)
        : m_width(width), m_pixels(static_cast<std::size_t>(width) * height * 4) {
        pvrtcDecode(blocks.data(), width, height, bits, m_pixels.data());
    }
    Pixel operator()(int x, int y) const {
        const std::uint8_t* pixel = &m_pixels[(static_cast<std::size_t>(y) * m_width + x) * 4];
        return {pixel[0], pixel[1], pixel[2], pixel[3]};
    }
    const std::vector<std::uint8_t>& pixels() const { return m_pixels; }

private:
    int m_width;
    std::vector<std::uint8_t> m_pixels;
};

/// A picture of equal blocks, so that nothing is blended.
Decoded equalBlocks(int bits, std::uint32_t modulation, std::uint32_t colors) {
    std::vector<std::uint8_t> data;
    for (int block = 0; block < 4; ++block)
        append(data, modulation, colors);
    return {data, bits == 2 ? 16 : 8, 8, bits};
}

/// What a level makes of black and white.
Pixel grey(int eighths) {
    const int value = 255 * eighths / 8;
    return {value, value, value, 255};
}

} // namespace

TEST(PvrtcDecoderTest, fourBitModes) {
    // Values 0 to 3 in the first row, 3 to 0 in the last one.
    constexpr std::uint32_t modulation = 0x1B0000E4;
    const Decoded standard = equalBlocks(4, modulation, blackToWhite);
    for (int value = 0; value < 4; ++value) {
        constexpr int levels[] = {0, 3, 5, 8};
        EXPECT_EQ(standard(value, 0), grey(levels[value]));
        EXPECT_EQ(standard(3 - value, 3), grey(levels[value]));
        EXPECT_EQ(standard(value, 1), grey(0));
    }
    const Decoded punchThrough = equalBlocks(4, modulation, blackToWhite | 1);
    EXPECT_EQ(punchThrough(0, 0), grey(0));
    EXPECT_EQ(punchThrough(1, 0), grey(4));
    EXPECT_EQ(punchThrough(2, 0), (Pixel{127, 127, 127, 0}));
    EXPECT_EQ(punchThrough(3, 0), grey(8));
}

TEST(PvrtcDecoderTest, fieldsOfColors) {
    // Low: alpha 5, red 9, green 2, blue 5 of 7. High: opaque, red 17, green 3, blue 30.
    constexpr std::uint32_t low = 5 << 12 | 9 << 8 | 2 << 4 | 5 << 1;
    constexpr std::uint32_t high = 1U << 15 | 17 << 10 | 3 << 5 | 30;
    // Widened to 10, 19, 4, 22 and 15, 17, 3, 30; times 16, and then to 8 bits.
    const Pixel lowPixel = {152 + 4, 32 + 1, 176 + 5, 160 + 10};
    const Pixel highPixel = {136 + 4, 24 + 0, 240 + 7, 240 + 15};
    for (const int bits : {2, 4}) {
        EXPECT_EQ(equalBlocks(bits, 0, low | high << 16)(1, 1), lowPixel);
        EXPECT_EQ(equalBlocks(bits, ~0U, low | high << 16)(1, 1), highPixel);
    }
    // The other way around blue has one bit more or less: opaque 9 of 15, and 11 of 15.
    const Decoded turned = equalBlocks(4, 0x000000C0, (1U << 15 | 9 << 1) | (7U << 12 | 11) << 16);
    EXPECT_EQ(turned(0, 0), (Pixel{0, 0, 152 + 4, 255}));
    EXPECT_EQ(turned(3, 0), (Pixel{0, 0, 184 + 5, 224 + 14}));
}

TEST(PvrtcDecoderTest, blendsTheFourNearestBlocksAndWrapsAround) {
    constexpr std::uint32_t allBlack = opaqueBlack | opaqueBlack << 16;
    const auto firstWhite = [&](int bits) {
        std::vector<std::uint8_t> data;
        append(data, 0, opaqueWhite);
        for (int block = 1; block < 4; ++block)
            append(data, 0, allBlack);
        return Decoded(data, bits == 2 ? 16 : 8, 8, bits);
    };
    // So many shares of white; the low colour has a bit of blue less, but white is white.
    const auto four = [](int sixteenths) { return (31 * sixteenths >> 1) + (31 * sixteenths >> 6); };
    const Decoded picture4 = firstWhite(4);
    EXPECT_EQ(picture4(2, 2)[0], 255);
    EXPECT_EQ(picture4(3, 2)[0], four(12));
    EXPECT_EQ(picture4(0, 0)[2], four(4));
    EXPECT_EQ(picture4(7, 7)[1], four(1));
    EXPECT_EQ(picture4(6, 2)[0], 0);
    const auto two = [](int shares) { return (31 * shares >> 2) + (31 * shares >> 7); };
    const Decoded picture2 = firstWhite(2);
    EXPECT_EQ(picture2(4, 2)[0], 255);
    EXPECT_EQ(picture2(7, 3)[0], two(5 * 3));
    EXPECT_EQ(picture2(15, 7)[0], two(3 * 1));
    EXPECT_EQ(picture2(12, 2)[0], 0);
}

TEST(PvrtcDecoderTest, blocksStandInMortonOrder) {
    const auto whiteBlock = [](int index, int width, int height, int x, int y) {
        std::vector<std::uint8_t> data;
        for (int block = 0; block < width * height / 16; ++block)
            append(data, 0, block == index ? opaqueWhite : opaqueBlack);
        return Decoded(data, width, height, 4)(x * 4 + 2, y * 4 + 2)[0] == 255;
    };
    EXPECT_TRUE(whiteBlock(1, 32, 32, 0, 1));
    EXPECT_TRUE(whiteBlock(2, 32, 32, 1, 0));
    EXPECT_TRUE(whiteBlock(4, 32, 32, 0, 2));
    EXPECT_TRUE(whiteBlock(56, 32, 32, 6, 4));
    EXPECT_TRUE(whiteBlock(7, 32, 8, 3, 1));
    EXPECT_TRUE(whiteBlock(12, 32, 8, 6, 0));
    EXPECT_TRUE(whiteBlock(13, 8, 32, 0, 7));
    EXPECT_TRUE(whiteBlock(3, 4, 32, 0, 3));
    // No powers of two: the same order, without gaps.
    EXPECT_EQ(pvrtcBlockOrder(3, 2), (std::vector<std::uint32_t>{0, 2, 4, 1, 3, 5}));
}

TEST(PvrtcDecoderTest, twoBitOneBitMode) {
    const Decoded picture = equalBlocks(2, 1U << 1 | 1U << 31, blackToWhite);
    EXPECT_EQ(picture(0, 0), grey(0));
    EXPECT_EQ(picture(1, 0), grey(8));
    EXPECT_EQ(picture(7, 3), grey(8));
    EXPECT_EQ(picture(9, 4), grey(8));
}

TEST(PvrtcDecoderTest, twoBitInterpolation) {
    // Stored: (0, 0) high, (2, 0) 3, (4, 0) 5, (1, 1) 3, (3, 1) 5, (2, 2) 8, (4, 2) 5.
    constexpr std::uint32_t stored = 2U << 0 | 1U << 2 | 2U << 4 | 1U << 8 | 2U << 10 | 3U << 18 | 2U << 20;
    constexpr std::uint32_t mode = 1;
    const Decoded cross = equalBlocks(2, stored, blackToWhite | mode);
    EXPECT_EQ(cross(0, 0), grey(8)) << "the high bit stands for both";
    EXPECT_EQ(cross(2, 0), grey(3));
    EXPECT_EQ(cross(4, 2), grey(5)) << "nothing borrowed at the centre";
    EXPECT_EQ(cross(2, 1), grey((3 + 5 + 3 + 8 + 2) / 4));
    EXPECT_EQ(cross(1, 0), grey((8 + 3 + 0 + 3 + 2) / 4)) << "the row above is the last one";
    EXPECT_EQ(cross(0, 1), grey((0 + 3 + 8 + 0 + 2) / 4)) << "the column to the left is the last one";

    const Decoded across = equalBlocks(2, stored | 1, blackToWhite | mode);
    EXPECT_EQ(across(0, 0), grey(8));
    EXPECT_EQ(across(4, 2), grey(8)) << "the high bit stands for both";
    EXPECT_EQ(across(2, 1), grey((3 + 5 + 1) / 2));
    EXPECT_EQ(across(1, 0), grey((8 + 3 + 1) / 2));

    const Decoded down = equalBlocks(2, (stored | 1 | 1U << 20) & ~(1U << 21), blackToWhite | mode);
    EXPECT_EQ(down(4, 2), grey(0));
    EXPECT_EQ(down(2, 1), grey((3 + 8 + 1) / 2));
    EXPECT_EQ(down(4, 1), grey((5 + 0 + 1) / 2));
}

TEST(PvrtcDecoderTest, twoBitInterpolationTakesANeighboursOwnValues) {
    // To the left of an interpolating block one that stores one bit a pixel, all high.
    std::vector<std::uint8_t> data;
    append(data, ~0U, blackToWhite);
    append(data, ~0U, blackToWhite);
    append(data, 0, blackToWhite | 1);
    append(data, 0, blackToWhite | 1);
    const Decoded picture(data, 16, 8, 2);
    EXPECT_EQ(picture(8, 1), grey((8 + 2) / 4));
    EXPECT_EQ(picture(15, 2), grey((8 + 2) / 4)) << "around the edge";
    EXPECT_EQ(picture(9, 2), grey(0));
}

TEST(PvrtcDecoderTest, anyBytesDecodeAsTheFormatSays) {
    std::mt19937 random(7);
    constexpr int sizes[][3] = {{4, 4, 4},  {8, 4, 2},  {4, 32, 4},  {8, 32, 2},
                                {64, 4, 4}, {64, 4, 2}, {32, 64, 4}, {64, 32, 2}};
    for (const auto& [width, height, bits] : sizes) {
        std::vector<std::uint8_t> data(static_cast<std::size_t>(width) * height * bits / 8);
        for (std::uint8_t& byte : data)
            byte = static_cast<std::uint8_t>(random());
        EXPECT_EQ(Decoded(data, width, height, bits).pixels(), plainPvrtcDecode(data, width, height, bits))
            << width << " x " << height << ", " << bits;
    }
}
