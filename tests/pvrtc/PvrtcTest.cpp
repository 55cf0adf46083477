#include "PlainPvrtc.h"
#include "PvrtcDecoder.h"
#include "PvrtcEncoder.h"

#include <QThreadPool>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <random>

namespace {

using Bytes = std::vector<std::uint8_t>;
using Pixel = std::array<std::uint8_t, 4>;

Bytes picture(int width, int height, const std::function<Pixel(int, int)>& pixel) {
    Bytes rgba;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            for (const std::uint8_t channel : pixel(x, y))
                rgba.push_back(channel);
    return rgba;
}

Bytes decoded(const Bytes& data, int width, int height, int bits) {
    Bytes rgba(static_cast<std::size_t>(width * height * 4));
    pvrtcDecode(data.data(), width, height, bits, rgba.data());
    return rgba;
}

Bytes throughCodec(const Bytes& rgba, int width, int height, int bits) {
    const Bytes data = pvrtcEncode(rgba.data(), width, height, bits);
    EXPECT_EQ(data.size(), static_cast<std::size_t>(width * height * bits / 8));
    return decoded(data, width, height, bits);
}

/// Peak signal to noise over all four channels, in decibels.
double quality(const Bytes& a, const Bytes& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        sum += std::pow(double(a[i]) - double(b[i]), 2);
    return 10 * std::log10(255.0 * 255.0 * double(a.size()) / std::max(sum, 1e-9));
}

std::uint8_t byte(double value) { return static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0)); }

/// Round shapes with soft shading on a transparent ground.
Bytes sprites(int side) {
    return picture(side, side, [](int x, int y) -> Pixel {
        const double dx = x % 32 - 15.5, dy = y % 32 - 15.5;
        const double radius = std::hypot(dx, dy);
        const double alpha = std::clamp((13 - radius) * 200, 0.0, 255.0);
        if (alpha == 0)
            return {0, 0, 0, 0};
        const double light = 1 - std::hypot(dx + 5, dy + 5) / 26;
        const bool other = (x / 32 + y / 32) % 2;
        return {byte((other ? 250 : 60) * light), byte(170 * light), byte((other ? 40 : 240) * light),
                byte(alpha)};
    });
}

} // namespace

TEST(PvrtcDecoder, readsWhatTheFormatSays) {
    std::mt19937 random(5);
    const std::pair<int, int> sizes[] = {{8, 8}, {16, 16}, {8, 32}, {64, 8}, {32, 64}};
    for (const int bits : {2, 4})
        for (const auto& [width, height] : sizes)
            for (int round = 0; round < 20; ++round) {
                Bytes data(static_cast<std::size_t>(width * height * bits / 8));
                for (std::uint8_t& value : data)
                    value = static_cast<std::uint8_t>(random());
                ASSERT_EQ(decoded(data, width, height, bits), plainPvrtcDecode(data, width, height, bits))
                    << bits << " bits, " << width << " x " << height << ", round " << round;
            }
}

TEST(PvrtcDecoder, blocksMadeByHand) {
    // Low colour opaque blue, high colour opaque red, each level once a row.
    constexpr std::array<std::uint8_t, 8> block = {0xe4, 0xe4, 0xe4, 0xe4, 0x1e, 0x80, 0x00, 0xfc};
    Bytes data(4 * block.size());
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = block[i % block.size()];
    const Bytes rgba = decoded(data, 8, 8, 4);
    const std::array<Pixel, 4> row = {
        {{0, 0, 255, 255}, {95, 0, 159, 255}, {159, 0, 95, 255}, {255, 0, 0, 255}}};
    for (std::size_t i = 0; i < rgba.size() / 4; ++i)
        for (std::size_t channel = 0; channel < 4; ++channel)
            EXPECT_EQ(rgba[4 * i + channel], row[i % 4][channel]) << i << ' ' << channel;
    // The same with the mode bit: the third is punched through.
    for (std::size_t i = 0; i < 4; ++i)
        data[8 * i + 4] |= 1;
    const Bytes punched = decoded(data, 8, 8, 4);
    EXPECT_EQ(punched[4 * 1], 127);
    EXPECT_EQ(punched[4 * 1 + 3], 255);
    EXPECT_EQ(punched[4 * 2], 127);
    EXPECT_EQ(punched[4 * 2 + 3], 0);
}

TEST(PvrtcEncoder, refusesSizesThatAreNoBlocks) {
    const Bytes rgba(4 * 64 * 64);
    for (const auto& [width, height, bits] : {std::array{6, 8, 4}, std::array{8, 6, 4}, std::array{4, 8, 2},
                                              std::array{12, 8, 2}, std::array{2, 2, 4}})
        EXPECT_TRUE(pvrtcEncode(rgba.data(), width, height, bits).empty())
            << width << ' ' << height << ' ' << bits;
    EXPECT_TRUE(pvrtcEncode(rgba.data(), 8192, 4, 4).empty());
    EXPECT_EQ(pvrtcEncode(rgba.data(), 8, 8, 4).size(), 32U);
    EXPECT_EQ(pvrtcEncode(rgba.data(), 8, 8, 2).size(), 16U);
    EXPECT_EQ(pvrtcEncode(rgba.data(), 8, 64, 2).size(), 128U) << "one block wide";
}

TEST(PvrtcEncoder, keepsOneColorAsWellAsTheFormatCan) {
    for (const int bits : {2, 4})
        for (const Pixel color :
             {Pixel{255, 0, 0, 255}, Pixel{0, 0, 0, 0}, Pixel{255, 255, 255, 255}, Pixel{0, 0, 0, 255}}) {
            const Bytes rgba = picture(16, 16, [&](int, int) { return color; });
            EXPECT_EQ(throughCodec(rgba, 16, 16, bits), rgba)
                << bits << ' ' << int(color[0]) << ' ' << int(color[3]);
        }
    // Any other is between two that the format has.
    for (const int bits : {2, 4}) {
        const Bytes rgba = picture(16, 16, [](int, int) { return Pixel{117, 93, 201, 255}; });
        EXPECT_GT(quality(throughCodec(rgba, 16, 16, bits), rgba), 38) << bits;
    }
}

TEST(PvrtcEncoder, keepsPicturesAlike) {
    const int side = 128;
    const Bytes shapes = sprites(side);
    const Bytes gradient = picture(side, side, [](int x, int y) {
        return Pixel{byte(x * 2), byte(y * 2), byte(255 - x - y / 2.0), byte(255 - y)};
    });
    EXPECT_GT(quality(throughCodec(shapes, side, side, 4), shapes), 27);
    EXPECT_GT(quality(throughCodec(shapes, side, side, 2), shapes), 22);
    EXPECT_GT(quality(throughCodec(gradient, side, side, 4), gradient), 33);
    EXPECT_GT(quality(throughCodec(gradient, side, side, 2), gradient), 31);
    // What is clear over more than a block around stays clear.
    const Bytes corner = picture(64, 64, [](int x, int y) {
        return x > 40 && y > 40 && x < 56 && y < 56 ? Pixel{200, 90, 30, 255} : Pixel{0, 0, 0, 0};
    });
    for (const int bits : {2, 4}) {
        const Bytes back = throughCodec(corner, 64, 64, bits);
        for (int y = 8; y < 28; ++y)
            for (int x = 8; x < 24; ++x)
                ASSERT_EQ(back[std::size_t(4 * (64 * y + x) + 3)], 0) << bits << ' ' << x << ' ' << y;
    }
}

TEST(PvrtcEncoder, hasTheSameBytesOnAnyNumberOfCores) {
    QThreadPool& pool = *QThreadPool::globalInstance();
    const int cores = pool.maxThreadCount();
    const Bytes shapes = sprites(64);
    for (const int bits : {2, 4}) {
        pool.setMaxThreadCount(1);
        const Bytes one = pvrtcEncode(shapes.data(), 64, 64, bits);
        pool.setMaxThreadCount(5);
        EXPECT_EQ(pvrtcEncode(shapes.data(), 64, 64, bits), one) << bits;
    }
    pool.setMaxThreadCount(cores);
}
