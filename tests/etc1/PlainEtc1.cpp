#include "PlainEtc1.h"

#include <algorithm>
#include <limits>

namespace {

using Color = std::array<int, 3>;

struct Half {
    int left, top, width, height;
};

constexpr std::array<std::array<int, 2>, 8> codewords = {
    {{2, 8}, {5, 17}, {9, 29}, {13, 42}, {18, 60}, {24, 80}, {33, 106}, {47, 183}}};
constexpr std::array<unsigned, 4> rowMasks = {0x000F, 0x00FF, 0x0FFF, 0xFFFF};
constexpr std::array<unsigned, 4> columnMasks = {0x1111, 0x3333, 0x7777, 0xFFFF};

bool counts(unsigned mask, int x, int y) { return (mask >> (4 * y + x) & 1) != 0; }

int quantized(int c, int top) { return ((c * top >> 8) + c * top + 128) >> 8; }

Color average(const std::uint8_t* pixels, unsigned mask, const Half& half) {
    Color result = {};
    for (int c = 0; c < 3; ++c) {
        for (int y = half.top; y < half.top + half.height; ++y)
            for (int x = half.left; x < half.left + half.width; ++x)
                if (counts(mask, x, y))
                    result[c] += pixels[3 * (4 * y + x) + c];
        result[c] = (result[c] + 4) / 8;
    }
    return result;
}

/// Returns the lowest score.
int chooseModifier(const std::uint8_t* pixel, const Color& color, const std::array<int, 2>& codeword,
                   int shift, std::uint32_t& indices) {
    const std::array<int, 4> modifiers = {codeword[0], codeword[1], -codeword[0], -codeword[1]};
    int best = std::numeric_limits<int>::max();
    std::uint32_t bestIndex = 0;
    for (std::uint32_t index = 0; index < 4; ++index) {
        const int red = std::clamp(color[0] + modifiers[index], 0, 255) - pixel[0];
        const int green = std::clamp(color[1] + modifiers[index], 0, 255) - pixel[1];
        const int blue = std::clamp(color[2] + modifiers[index], 0, 255) - pixel[2];
        const int score = 3 * red * red + 6 * green * green + blue * blue;
        if (score < best) {
            best = score;
            bestIndex = index;
        }
    }
    indices |= (bestIndex >> 1 << 16 | (bestIndex & 1)) << shift;
    return best;
}

PlainEtc1Block encodeHalf(const std::uint8_t* pixels, unsigned mask, const Half& half, const Color& color,
                          int tableShift, const PlainEtc1Block& start) {
    PlainEtc1Block best;
    best.error = std::numeric_limits<int>::max();
    for (std::uint32_t table = 0; table < 8; ++table) {
        PlainEtc1Block trial = start;
        trial.first |= table << tableShift;
        for (int y = half.top; y < half.top + half.height; ++y)
            for (int x = half.left; x < half.left + half.width; ++x)
                if (counts(mask, x, y))
                    trial.error += chooseModifier(pixels + 3 * (4 * y + x), color, codewords[table],
                                                  4 * x + y, trial.second);
        if (trial.error < best.error)
            best = trial;
    }
    return best;
}

PlainEtc1Block encodeLayout(const std::uint8_t* pixels, unsigned mask, bool isFlipped) {
    const Half first = isFlipped ? Half{0, 0, 4, 2} : Half{0, 0, 2, 4};
    const Half second = isFlipped ? Half{0, 2, 4, 2} : Half{2, 0, 2, 4};
    const std::array<Color, 2> averages = {average(pixels, mask, first), average(pixels, mask, second)};
    bool isNear = true;
    for (int c = 0; c < 3; ++c) {
        const int difference = quantized(averages[1][c], 31) - quantized(averages[0][c], 31);
        isNear = isNear && difference >= -4 && difference <= 3;
    }
    PlainEtc1Block block;
    block.first = (isNear ? 2 : 0) | (isFlipped ? 1 : 0);
    std::array<Color, 2> colors;
    for (int c = 0; c < 3; ++c) {
        const int a = quantized(averages[0][c], isNear ? 31 : 15);
        const int b = quantized(averages[1][c], isNear ? 31 : 15);
        const int byte = isNear ? a << 3 | ((b - a) & 7) : a << 4 | b;
        block.first |= static_cast<std::uint32_t>(byte) << (24 - 8 * c);
        colors[0][c] = isNear ? a << 3 | a >> 2 : a << 4 | a;
        colors[1][c] = isNear ? b << 3 | b >> 2 : b << 4 | b;
    }
    block = encodeHalf(pixels, mask, first, colors[0], 5, block);
    return encodeHalf(pixels, mask, second, colors[1], 2, block);
}

} // namespace

std::array<std::uint8_t, 8> PlainEtc1Block::bytes() const {
    std::array<std::uint8_t, 8> result;
    for (int i = 0; i < 4; ++i) {
        result[i] = static_cast<std::uint8_t>(first >> (24 - 8 * i));
        result[4 + i] = static_cast<std::uint8_t>(second >> (24 - 8 * i));
    }
    return result;
}

PlainEtc1Block plainEtc1Block(const std::uint8_t* pixels, unsigned mask) {
    const PlainEtc1Block sideBySide = encodeLayout(pixels, mask, false);
    const PlainEtc1Block stacked = encodeLayout(pixels, mask, true);
    return stacked.error < sideBySide.error ? stacked : sideBySide;
}

std::vector<std::uint8_t> plainEtc1Image(const std::uint8_t* pixels, int width, int height) {
    std::vector<std::uint8_t> result;
    for (int top = 0; top < height; top += 4)
        for (int left = 0; left < width; left += 4) {
            std::array<std::uint8_t, 48> block = {};
            const int rows = std::min(height - top, 4);
            const int columns = std::min(width - left, 4);
            for (int y = 0; y < rows; ++y)
                std::copy_n(pixels + 3 * ((top + y) * width + left), 3 * columns, &block[12 * y]);
            const auto bytes =
                plainEtc1Block(block.data(), rowMasks[rows - 1] & columnMasks[columns - 1]).bytes();
            result.insert(result.end(), bytes.begin(), bytes.end());
        }
    return result;
}
