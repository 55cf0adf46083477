#include "Etc1Encoder.h"
#include "Etc1BlockEncoder.h"
#include "Etc1Decoder.h"
#include "PlainEtc1.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>

namespace {

using Pixels = std::array<std::uint8_t, 48>;
using Bytes = std::array<std::uint8_t, 8>;

std::mt19937 randomNumbers(1);

int below(int limit) { return static_cast<int>(randomNumbers() % static_cast<unsigned>(limit)); }

std::uint8_t byte(int value) { return static_cast<std::uint8_t>(std::clamp(value, 0, 255)); }

Pixels filled(const std::function<int(int x, int y, int channel)>& value) {
    Pixels result;
    for (int i = 0; i < 48; ++i)
        result[i] = byte(value(i / 3 % 4, i / 12, i % 3));
    return result;
}

Pixels uniform(int red, int green, int blue) {
    return filled([=](int, int, int channel) { return std::array{red, green, blue}[channel]; });
}

/// Blocks of the kinds that pictures are made of, and of some that they aren't.
Pixels randomBlock(int kind) {
    const Pixels colors = filled([](int, int, int) { return below(256); });
    const int range = 1 + below(60);
    switch (kind) {
    case 0: // noise
        return colors;
    case 1: // a colour and a little noise
        return filled([&](int, int, int channel) { return colors[channel] + below(range) - range / 2; });
    case 2: { // few colours
        const int count = 1 + below(3);
        Pixels result;
        for (int pixel = 0; pixel < 16; ++pixel)
            std::copy_n(&colors[3 * below(count)], 3, &result[3 * pixel]);
        return result;
    }
    case 3: // a gradient
        return filled([&](int x, int y, int channel) {
            return colors[channel] + x * (colors[3 + channel] - 128) / 5 +
                   y * (colors[6 + channel] - 128) / 5;
        });
    case 4: // extremes
        return filled([](int, int, int) { return 255 * below(2); });
    case 5: // nearly black
        return filled([&](int, int, int) { return below(range); });
    case 6: // nearly white
        return filled([&](int, int, int) { return 255 - below(range); });
    default: // greys, many of them equal
        return filled([&, level = 0](int, int, int channel) mutable {
            return level = channel == 0 ? colors[below(4)] : level;
        });
    }
}
constexpr int kinds = 8;

Bytes encode(Etc1BlockEncoder encoder, const Pixels& pixels, unsigned mask) {
    Etc1Block block;
    for (int i = 0; i < 16; ++i)
        if ((mask >> i & 1) != 0)
            block.setPixel(
                i % 4, i / 4,
                static_cast<std::uint32_t>(pixels[3 * i] | pixels[3 * i + 1] << 8 | pixels[3 * i + 2] << 16));
    Bytes result;
    encoder(block, result.data());
    return result;
}

Bytes encode(const Pixels& pixels, std::uint16_t mask = 0xFFFF) {
    Bytes result;
    etc1EncodeBlock(pixels.data(), mask, result.data());
    return result;
}

/// The weighted error of what a decoder makes of a block.
int decodedError(const Bytes& bytes, const Pixels& pixels, unsigned mask) {
    Pixels decoded;
    etc1DecodeImage(bytes.data(), 4, 4, decoded.data(), 12);
    int error = 0;
    for (int i = 0; i < 48; ++i)
        if ((mask >> i / 3 & 1) != 0)
            error += std::array{3, 6, 1}[i % 3] * (decoded[i] - pixels[i]) * (decoded[i] - pixels[i]);
    return error;
}

} // namespace

TEST(Etc1EncoderTest, blocksAreThoseOfThePlainSearchWithAnyInstructions) {
    constexpr std::array<unsigned, 4> rowMasks = {0x000F, 0x00FF, 0x0FFF, 0xFFFF};
    constexpr std::array<unsigned, 4> columnMasks = {0x1111, 0x3333, 0x7777, 0xFFFF};
    for (int i = 0; i < 24000; ++i) {
        const Pixels pixels = randomBlock(i % kinds);
        // Half of them whole, the others as they are at a picture's edges, and some with holes.
        const unsigned edges = rowMasks[below(4)] & columnMasks[below(4)];
        const unsigned mask = i / kinds % 2 == 0 ? 0xFFFF : i / kinds % 8 == 1 ? below(0x10000) : edges;
        const PlainEtc1Block plain = plainEtc1Block(pixels.data(), mask);
        for (const Etc1BlockEncoder encoder : etc1BlockEncoders())
            ASSERT_EQ(encode(encoder, pixels, mask), plain.bytes()) << "block " << i << ", mask " << mask;
        ASSERT_EQ(encode(pixels, static_cast<std::uint16_t>(mask)), plain.bytes());
        ASSERT_EQ(decodedError(plain.bytes(), pixels, mask), plain.error) << "block " << i;
    }
}

TEST(Etc1EncoderTest, picturesOfAnySizeAndPitch) {
    for (int width = 1; width <= 9; ++width)
        for (int height = 1; height <= 9; ++height) {
            const std::size_t gap = 5;
            const std::size_t pitch = 3 * width + gap;
            std::vector<std::uint8_t> pixels(3 * width * height);
            std::vector<std::uint8_t> pitched;
            for (std::size_t i = 0; i < pixels.size(); ++i) {
                // Blocks that repeat themselves are among them.
                pixels[i] = byte(width % 2 == 0 ? 80 : below(256));
                pitched.push_back(pixels[i]);
                if ((i + 1) % (3 * width) == 0)
                    pitched.insert(pitched.end(), gap, byte(below(256)));
            }
            std::vector<std::uint8_t> expected = plainEtc1Image(pixels.data(), width, height);
            ASSERT_EQ(etc1DataSize(width, height), expected.size());
            expected.push_back(0xAB);
            std::vector<std::uint8_t> target(expected.size(), 0xAB);
            EXPECT_EQ(etc1EncodeImage(pitched.data(), width, height, 3, pitch, target.data()), 0);
            EXPECT_EQ(target, expected) << width << " x " << height;
        }
    EXPECT_EQ(etc1DataSize(5, 5), 32);
    EXPECT_EQ(etc1DataSize(0, 5), 0);
}

TEST(Etc1EncoderTest, aLargePicture) {
    constexpr int width = 403;
    constexpr int height = 250;
    std::vector<std::uint8_t> pixels;
    for (int i = 0; i < width * height; ++i)
        for (int channel = 0; channel < 3; ++channel)
            pixels.push_back(byte(i % width < 200 ? 0 : i / (channel + 300) + below(30)));
    std::vector<std::uint8_t> target(etc1DataSize(width, height));
    EXPECT_EQ(etc1EncodeImage(pixels.data(), width, height, 3, 3 * width, target.data()), 0);
    EXPECT_EQ(target, plainEtc1Image(pixels.data(), width, height));
}

TEST(Etc1EncoderTest, twoBytesAPixelAreRgb565) {
    struct Case {
        int word, red, green, blue;
    };
    for (const auto& [word, red, green, blue] :
         {Case{0xF800, 255, 0, 0}, Case{0x07E0, 0, 255, 0}, Case{0x001F, 0, 0, 255}, Case{0x0861, 8, 12, 8},
          Case{0x8410, 132, 130, 132}, Case{0x1905, 24, 32, 41}}) {
        std::array<std::uint8_t, 32> pixels;
        for (int i = 0; i < 32; i += 2) {
            pixels[i] = byte(word & 0xFF);
            pixels[i + 1] = byte(word >> 8);
        }
        Bytes target;
        EXPECT_EQ(etc1EncodeImage(pixels.data(), 4, 4, 2, 8, target.data()), 0);
        EXPECT_EQ(target, encode(uniform(red, green, blue))) << word;
    }
}

TEST(Etc1EncoderTest, otherBytesAPixelAreRefused) {
    for (const int bytesPerPixel : {-3, 0, 1, 4}) {
        Pixels pixels = {};
        Bytes target = {};
        EXPECT_EQ(etc1EncodeImage(pixels.data(), 2, 2, bytesPerPixel, 8, target.data()), -1);
        EXPECT_THAT(target, testing::Each(0));
    }
}

TEST(Etc1EncoderTest, uniformBlocksTakeTheFirstOfAllThatIsEqual) {
    // Differences of 0, table 0, not flipped. What the clamping makes equal to -2 and +2 comes after it.
    EXPECT_EQ(encode(uniform(0, 0, 0)), (Bytes{0, 0, 0, 2, 0xFF, 0xFF, 0, 0}));
    EXPECT_EQ(encode(uniform(255, 255, 255)), (Bytes{0xF8, 0xF8, 0xF8, 2, 0, 0, 0, 0}));
    // Nothing counts.
    EXPECT_EQ(encode(uniform(9, 9, 9), 0), (Bytes{0, 0, 0, 2, 0, 0, 0, 0}));
}

TEST(Etc1EncoderTest, differencesEndAtMinus4And3) {
    // 82 is step 10 of 31, and step 5 of 15.
    const auto leftAndRight = [](int left, int right) {
        return encode(filled([=](int x, int, int channel) {
            return channel > 0 ? 82 : x < 2 ? left : right;
        }));
    };
    const auto upperAndLower = [](int upper, int lower) {
        return encode(filled([=](int, int y, int channel) {
            return channel > 0 ? 82 : y < 2 ? upper : lower;
        }));
    };
    struct Case {
        Bytes block;
        int red, mode;
    };
    for (const auto& [block, red, mode] :
         {Case{leftAndRight(82, 107), 10 << 3 | 3, 2}, Case{leftAndRight(82, 115), 5 << 4 | 7, 0},
          Case{leftAndRight(82, 49), 10 << 3 | 4, 2}, Case{leftAndRight(82, 41), 5 << 4 | 2, 0},
          Case{upperAndLower(82, 107), 10 << 3 | 3, 3}, Case{upperAndLower(82, 41), 5 << 4 | 2, 1}}) {
        EXPECT_EQ(block[0], red);
        EXPECT_EQ(block[3] & 3, mode) << red;
    }
}
