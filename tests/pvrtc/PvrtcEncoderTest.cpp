#include "PvrtcEncoder.h"
#include "PvrtcDecoder.h"

#include "BlockPacking.h"
#include "ColorFit.h"
#include "StartColors.h"

#include <QThreadPool>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using Pixels = std::vector<std::uint8_t>;

/// A soft coloured disc with a hard dark rim, and noise over half of it, on a transparent ground; in the
/// middle.
Pixels discPicture(int width, int height, double radius) {
    std::mt19937 random(5);
    Pixels rgba(static_cast<std::size_t>(width) * height * 4);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const double distance = std::hypot(x - width / 2 + 0.5, y - height / 2 + 0.5);
            if (distance > radius)
                continue;
            const int noise = x > width / 2 ? static_cast<int>(random() % 32) : 0;
            const bool rim = distance > radius - 3;
            std::uint8_t* pixel = &rgba[(static_cast<std::size_t>(y) * width + x) * 4];
            pixel[0] = static_cast<std::uint8_t>(rim ? 30 : 220 - noise);
            pixel[1] = static_cast<std::uint8_t>(rim ? 20 : 60 + 120 * distance / radius);
            pixel[2] = static_cast<std::uint8_t>(rim ? 60 : 200 * x / width + noise);
            pixel[3] = static_cast<std::uint8_t>(std::min(255.0, (radius - distance) * 255));
        }
    return rgba;
}

Pixels uniformPicture(int side, std::array<std::uint8_t, 4> color) {
    Pixels rgba;
    for (int pixel = 0; pixel < side * side; ++pixel)
        rgba.insert(rgba.end(), color.begin(), color.end());
    return rgba;
}

Pixels decoded(const Pixels& data, int width, int height, int bits) {
    Pixels rgba(static_cast<std::size_t>(width) * height * 4);
    pvrtcDecode(data.data(), width, height, bits, rgba.data());
    return rgba;
}

Pixels roundTrip(const Pixels& rgba, int width, int height, int bits) {
    return decoded(pvrtcEncode(rgba.data(), width, height, bits), width, height, bits);
}

int largestDifference(const Pixels& a, const Pixels& b) {
    int largest = 0;
    for (std::size_t index = 0; index < a.size(); ++index)
        largest = std::max(largest, std::abs(a[index] - b[index]));
    return largest;
}

double peakSignalToNoise(const Pixels& a, const Pixels& b) {
    double squares = 0;
    for (std::size_t index = 0; index < a.size(); ++index)
        squares += (a[index] - b[index]) * (a[index] - b[index]);
    return 10 * std::log10(255.0 * 255.0 * static_cast<double>(a.size()) / squares);
}

/// What comes of the start colours alone, those along the main axis of each block's own pixels, with the best
/// modulation.
template <int Bits>
Pixels withoutSearch(const Pixels& rgba, int width, int height) {
    using namespace pvrtc;
    const WorkingImage image(rgba.data(), width, height);
    BlockGrid grid(width / pvrtcBlockWidth(Bits), height / 4);
    const UniformColors uniformColors;
    for (int row = 0; row < grid.rows(); ++row)
        for (int column = 0; column < grid.columns(); ++column) {
            BlockRecord& record = grid.at(column, row);
            const StartEnds start = analyseFootprint<Bits>(PixelWindow<Bits>(image, column, row), record);
            const StartEnds* around[9];
            std::fill(std::begin(around), std::end(around), &start);
            setUpStandardRepStarts<Bits>(around, uniformColors, record);
        }
    return decoded(packBlocks<Bits>(image, grid), width, height, Bits);
}

class OnThreads {
public:
    explicit OnThreads(int count) : m_before(QThreadPool::globalInstance()->maxThreadCount()) {
        QThreadPool::globalInstance()->setMaxThreadCount(count);
    }
    ~OnThreads() { QThreadPool::globalInstance()->setMaxThreadCount(m_before); }

private:
    int m_before;
};

} // namespace

TEST(PvrtcEncoderTest, sizesAndRefusedSides) {
    const Pixels rgba(std::size_t{4100} * 16 * 4);
    EXPECT_EQ(pvrtcEncode(rgba.data(), 64, 32, 4).size(), 64U * 32 / 2);
    EXPECT_EQ(pvrtcEncode(rgba.data(), 64, 32, 2).size(), 64U * 32 / 4);
    EXPECT_EQ(pvrtcEncode(rgba.data(), 4096, 4, 4).size(), 4096U * 4 / 2);
    EXPECT_EQ(pvrtcEncode(rgba.data(), 12, 20, 4).size(), 12U * 20 / 2);
    constexpr int refused[][3] = {{4100, 4, 4}, {4, 4100, 4}, {6, 8, 4}, {8, 6, 4},
                                  {4, 8, 2},    {12, 8, 2},   {2, 2, 4}, {0, 8, 4}};
    for (const auto& [width, height, bits] : refused)
        EXPECT_TRUE(pvrtcEncode(rgba.data(), width, height, bits).empty()) << width << " x " << height;
}

TEST(PvrtcEncoderTest, uniformPicturesStayWhatTheyAre) {
    constexpr std::array<std::uint8_t, 4> colors[] = {
        {0, 0, 0, 0}, {255, 255, 255, 255}, {0, 0, 0, 255}, {100, 150, 201, 255}, {13, 77, 241, 255}};
    for (const auto& color : colors) {
        const Pixels rgba = uniformPicture(16, color);
        const bool isStored = color[0] % 255 == 0;
        EXPECT_LE(largestDifference(roundTrip(rgba, 16, 16, 4), rgba), isStored ? 0 : 2) << int{color[0]};
        EXPECT_LE(largestDifference(roundTrip(rgba, 16, 16, 2), rgba), isStored ? 0 : 8) << int{color[0]};
    }
    const Pixels translucent = uniformPicture(16, {90, 40, 200, 120});
    EXPECT_LE(largestDifference(roundTrip(translucent, 16, 16, 4), translucent), 4);
}

TEST(PvrtcEncoderTest, transparentGroundStaysTransparent) {
    constexpr int side = 64;
    constexpr int radius = 12;
    const Pixels rgba = discPicture(side, side, radius);
    for (const int bits : {2, 4}) {
        const Pixels result = roundTrip(rgba, side, side, bits);
        int seen = 0;
        for (int y = 0; y < side; ++y)
            for (int x = 0; x < side; ++x) {
                // Out of reach of all blocks that reach a part of the disc.
                const bool isFarX = std::abs(x - side / 2) > radius + 2 * 8;
                const bool isFarY = std::abs(y - side / 2) > radius + 2 * 4;
                const std::uint8_t* pixel = &result[(static_cast<std::size_t>(y) * side + x) * 4];
                seen += isFarX || isFarY ? pixel[0] | pixel[1] | pixel[2] | pixel[3] : 0;
            }
        EXPECT_EQ(seen, 0) << bits;
    }
}

TEST(PvrtcEncoderTest, searchGainsMuchOnItsStart) {
    const Pixels rgba = discPicture(64, 64, 28);
    const auto quality = [&](const Pixels& result) { return peakSignalToNoise(result, rgba); };
    EXPECT_GT(quality(roundTrip(rgba, 64, 64, 4)), quality(withoutSearch<4>(rgba, 64, 64)) + 3);
    EXPECT_GT(quality(roundTrip(rgba, 64, 64, 2)), quality(withoutSearch<2>(rgba, 64, 64)) + 1.5);
}

TEST(PvrtcEncoderTest, smallAndNarrowPictures) {
    constexpr int sizes[][3] = {{8, 8, 4},  {4, 4, 4},  {8, 4, 2},  {8, 8, 2},
                                {4, 64, 4}, {64, 4, 4}, {8, 64, 2}, {64, 4, 2}};
    for (const auto& [width, height, bits] : sizes) {
        // A ramp that goes up and down, so that both ends meet.
        Pixels rgba;
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const int ramp =
                    std::abs(x * 2 - width) * 100 / width + std::abs(y * 2 - height) * 100 / height;
                for (const int channel : {ramp, 220 - ramp, 128, 255})
                    rgba.push_back(static_cast<std::uint8_t>(channel));
            }
        EXPECT_GT(peakSignalToNoise(roundTrip(rgba, width, height, bits), rgba), 26)
            << width << " x " << height << ", " << bits;
    }
}

TEST(PvrtcEncoderTest, equalBytesOnAnyNumberOfThreads) {
    // The last two have neighbours of one sweep: an odd number of rows or columns, which wraps around.
    constexpr int sizes[][3] = {{64, 64, 4}, {64, 64, 2}, {40, 28, 4}, {40, 44, 2}};
    for (const auto& size : sizes) {
        const int width = size[0];
        const int height = size[1];
        const int bits = size[2];
        const Pixels rgba = discPicture(width, height, 13);
        const auto encodedOn = [&](int threads) {
            const OnThreads limit(threads);
            return pvrtcEncode(rgba.data(), width, height, bits);
        };
        const Pixels alone = encodedOn(1);
        for (int repeat = 0; repeat < 3; ++repeat)
            EXPECT_EQ(encodedOn(4), alone) << width << " x " << height << ", " << bits;
    }
}

TEST(PvrtcEncoderTest, colorsThatTheSearchMakesCanBeStored) {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> channel(-4, 36);
    for (int repeat = 0; repeat < 2000; ++repeat) {
        const pvrtc::Float4 low{channel(random), channel(random), channel(random), channel(random) / 2};
        const pvrtc::Float4 high{channel(random), channel(random), channel(random), channel(random) / 2};
        const PvrtcColorPair pair = pvrtc::nearestPair(low, high);
        EXPECT_EQ(pvrtcUnpackColors(pvrtcPackColors(pair)), pair);
    }
    for (std::uint32_t half = 0; half < 65536; ++half) {
        const std::uint32_t word = (half | half << 16) & ~1U;
        ASSERT_EQ(pvrtcPackColors(pvrtcUnpackColors(word)), word);
    }
}
