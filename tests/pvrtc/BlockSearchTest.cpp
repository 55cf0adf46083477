#include "BlockSearch.h"
#include "BlockPacking.h"
#include "EigenBasis.h"
#include "PvrtcDecoder.h"
#include "RegionMap.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace pvrtc;

namespace {

/// A random picture and random colours and modes of its blocks.
template <int Bits>
struct RandomBlocks {
    static constexpr int width = 64;
    static constexpr int height = 32;

    explicit RandomBlocks(unsigned seed)
        : random(seed), rgba(width * height * 4), image(shuffled().data(), width, height),
          grid(width / pvrtcBlockWidth(Bits), height / pvrtcBlockHeight) {
        for (int row = 0; row < grid.rows(); ++row)
            for (int column = 0; column < grid.columns(); ++column) {
                BlockRecord& record = grid.at(column, row);
                record.colors = pvrtcUnpackColors(random() & ~1U);
                record.mode = static_cast<std::uint8_t>(random() % modeCount(Bits));
            }
    }

    /// Blotches, so that neighbouring pixels have to do with one another.
    const std::vector<std::uint8_t>& shuffled() {
        std::uint32_t color = 0;
        for (std::size_t index = 0; index < rgba.size(); ++index) {
            if (index % 4 == 0 && random() % 3 == 0)
                color = random() % 4 == 0 ? 0 : random();
            rgba[index] = static_cast<std::uint8_t>(color >> 8 * (index % 4));
        }
        return rgba;
    }

    Footprint<Bits> footprint(int column, int row) const {
        Footprint<Bits> footprint;
        footprint.load(PixelWindow<Bits>(image, column, row), grid, column, row);
        return footprint;
    }

    std::mt19937 random;
    std::vector<std::uint8_t> rgba;
    WorkingImage image;
    BlockGrid grid;
};

template <int Bits>
ScoreRequest<Bits> request(const PvrtcColorPair& colors, std::int64_t jointLimit) {
    ScoreRequest<Bits> request{};
    for (std::size_t which = 0; which < 2; ++which)
        std::copy(colors[which].begin(), colors[which].end(), request.colors[which]);
    request.modes = (1U << modeCount(Bits)) - 1;
    request.jointLimit = jointLimit;
    return request;
}

template <int Bits>
RegionMasks<Bits> someRegions(std::mt19937& random) {
    RegionMasks<Bits> regions;
    regions.count = 3;
    for (int lane = 0; lane < Footprint<Bits>::lanes; ++lane) {
        const auto of = static_cast<int>(random() % 5);
        for (int region = 0; region < regions.count; ++region)
            regions.masks[region][lane] = region == of ? -1 : 0;
    }
    return regions;
}

/// All numbers of a score.
std::vector<std::int32_t> numbers(const Score& score) {
    std::vector<std::int32_t> all = {score.error, score.product, score.squares[0], score.squares[1]};
    for (const Int32x4& side : score.sides)
        for (int channel = 0; channel < 4; ++channel)
            all.push_back(side[channel]);
    return all;
}

template <int Bits>
void expectEqualScoresOnAllProcessors() {
    RandomBlocks<Bits> blocks(11);
    for (int repeat = 0; repeat < 60; ++repeat) {
        const Footprint<Bits> footprint =
            blocks.footprint(repeat % blocks.grid.columns(), repeat % blocks.grid.rows());
        ScoreRequest<Bits> scored =
            request<Bits>(pvrtcUnpackColors(blocks.random()), repeat % 2 == 0 ? -1 : 1 << 30);
        const RegionMasks<Bits> regions = someRegions<Bits>(blocks.random);
        scored.regions = repeat % 3 == 0 ? &regions : nullptr;
        Score fast[mostModes];
        Score plain[mostModes];
        footprintScorer<Bits>()(footprint, scored, fast);
        scoreFootprintPlain(footprint, scored, plain);
        for (int mode = 0; mode < modeCount(Bits); ++mode)
            ASSERT_EQ(numbers(fast[mode]), numbers(plain[mode])) << Bits << " bits, mode " << mode;
    }
}

/// Squared differences of the decoded picture over the pixels that a block's colours reach.
template <int Bits>
double decodedError(const RandomBlocks<Bits>& blocks, const std::vector<std::uint8_t>& decoded, int column,
                    int row) {
    constexpr int blockWidth = pvrtcBlockWidth(Bits);
    double sum = 0;
    for (int dy = -3; dy <= 3; ++dy)
        for (int dx = 1 - blockWidth; dx < blockWidth; ++dx) {
            const int x = (column * blockWidth + blockWidth / 2 + dx + blocks.width) % blocks.width;
            const int y = (row * 4 + 2 + dy + blocks.height) % blocks.height;
            for (int channel = 0; channel < 4; ++channel) {
                const int at = (y * blocks.width + x) * 4 + channel;
                sum += std::pow(
                    decoded[static_cast<std::size_t>(at)] - blocks.rgba[static_cast<std::size_t>(at)], 2);
            }
        }
    return sum;
}

template <int Bits>
std::vector<std::uint8_t> decodedPicture(const RandomBlocks<Bits>& blocks) {
    std::vector<std::uint8_t> decoded(blocks.rgba.size());
    pvrtcDecode(packBlocks<Bits>(blocks.image, blocks.grid).data(), blocks.width, blocks.height, Bits,
                decoded.data());
    return decoded;
}

/// Largest and smallest share of the decoded errors in the scores.
template <int Bits>
std::pair<double, double> decodedShares() {
    const RandomBlocks<Bits> blocks(17);
    const std::vector<std::uint8_t> decoded = decodedPicture(blocks);
    double largest = 0;
    double smallest = 2;
    for (int row = 0; row < blocks.grid.rows(); ++row)
        for (int column = 0; column < blocks.grid.columns(); ++column) {
            const BlockRecord& record = blocks.grid.at(column, row);
            Score scores[mostModes];
            footprintScorer<Bits>()(blocks.footprint(column, row), request<Bits>(record.colors, 1 << 30),
                                    scores);
            const double share = decodedError(blocks, decoded, column, row) / scores[record.mode].error;
            largest = std::max(largest, share);
            smallest = std::min(smallest, share);
        }
    return {largest, smallest};
}

} // namespace

TEST(BlockSearchTest, scoresAreEqualOnAllProcessors) {
    expectEqualScoresOnAllProcessors<2>();
    expectEqualScoresOnAllProcessors<4>();
}

TEST(BlockSearchTest, scoresAreTheErrorsOfTheDecodedPicture) {
    // The picture takes the best of rounded values, the search that of unrounded ones.
    const auto [largest4, smallest4] = decodedShares<4>();
    EXPECT_LE(largest4, 1);
    EXPECT_GT(smallest4, 0.998);
    // And it goes further in choosing levels jointly, for the good of all blocks together.
    const auto [largest2, smallest2] = decodedShares<2>();
    EXPECT_LT(largest2, 1.02);
    EXPECT_GT(smallest2, 0.94);
}

TEST(BlockSearchTest, blocksAreLeftAloneWhileNothingChangesAroundThem) {
    RandomBlocks<4> blocks(23);
    for (int row = 0; row < blocks.grid.rows(); ++row)
        for (int column = 0; column < blocks.grid.columns(); ++column) {
            BlockRecord& record = blocks.grid.at(column, row);
            record.kept[0][0] = record.kept[1][0] = pvrtcPackColors(record.colors);
            record.keptCount[0] = record.keptCount[1] = 1;
            record.flat = record.fewRegions = record.hasTransparency = false;
            record.changed = 3;
            record.evaluated = 4;
        }
    BlockSearch<4> search(blocks.image, blocks.grid);
    BlockRecord& record = blocks.grid.at(5, 3);
    const PvrtcColorPair before = record.colors;
    const PassSettings late(5);
    search.optimiseRegion(5, 3, late, 9);
    EXPECT_EQ(record.evaluated, 4);

    blocks.grid.at(4, 2).changed = 4;
    search.optimiseRegion(5, 3, late, 10);
    EXPECT_EQ(record.evaluated, 10);
    EXPECT_NE(record.colors, before);
    EXPECT_EQ(record.changed, 10);

    // The pass in which the settings change asks for no stamps; what is best stays.
    for (std::uint8_t stamp = 11; stamp < 20; ++stamp)
        search.optimiseRegion(5, 3, PassSettings(4), stamp);
    const std::uint8_t changed = record.changed;
    const PvrtcColorPair settled = record.colors;
    search.optimiseRegion(5, 3, PassSettings(4), 20);
    EXPECT_EQ(record.evaluated, 20);
    EXPECT_EQ(record.changed, changed);
    EXPECT_EQ(record.colors, settled);
}

TEST(BlockSearchTest, eigenvectors) {
    std::mt19937 random(29);
    std::uniform_real_distribution<float> entry(-100, 100);
    SymmetricMatrices matrices{};
    for (int row = 0; row < 4; ++row)
        for (int column = row; column < 4; ++column)
            for (int lane = 0; lane < 3; ++lane)
                matrices.entries[row][column][lane] =
                    lane == 2 ? 0.0F : entry(random) + (row == column ? 150.0F : 0.0F);
    const EigenBasis basis = eigenBasis(matrices);
    for (int lane = 0; lane < 3; ++lane)
        for (int k = 0; k < 4; ++k)
            for (int row = 0; row < 4; ++row) {
                float product = 0;
                for (int column = 0; column < 4; ++column)
                    product += matrices.entries[std::min(row, column)][std::max(row, column)][lane] *
                               basis.vectors[k][column][lane];
                EXPECT_NEAR(product, basis.values[k][lane] * basis.vectors[k][row][lane], 0.5F);
            }
}

TEST(BlockSearchTest, regionsOfLikeColour) {
    std::vector<std::uint8_t> rgba(16 * 16 * 4, 200);
    const auto map = [&] { return RegionMap<4>(PixelWindow<4>(WorkingImage(rgba.data(), 16, 16), 1, 1)); };
    EXPECT_EQ(map().count, 1);
    // A stroke down the middle of the window, which then spans x from 2 to 10.
    for (int y = 0; y < 16; ++y)
        rgba[static_cast<std::size_t>(y * 16 + 6) * 4] = 20;
    EXPECT_EQ(map().count, 3);
    EXPECT_TRUE(map().isCoarse());
    EXPECT_NE(map().regions[0][0], map().regions[0][8]);
    EXPECT_EQ(map().regions[0][8], map().regions[8][5]);
    std::mt19937 random(31);
    for (std::uint8_t& byte : rgba)
        byte = static_cast<std::uint8_t>(random());
    EXPECT_FALSE(map().isCoarse());
}
