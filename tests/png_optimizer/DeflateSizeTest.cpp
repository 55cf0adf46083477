#include "PngDeflate.h"
#include "PngTrials.h"

#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <random>

namespace {

constexpr std::size_t unlimited = ~std::size_t{0};

/// A grey picture whose rows are bytes of a kind: noise, few values, repeated strings, runs, zeros between.
PngPicture picture(unsigned seed, std::uint32_t width, std::uint32_t height) {
    std::mt19937 random(seed);
    PngPicture result;
    result.width = width;
    result.height = height;
    result.colorType = PNG_COLOR_TYPE_GRAY;
    result.pixels.resize(std::size_t{width} * height);
    const unsigned values = 1 + random() % 20;
    std::size_t source = 0;
    for (std::size_t i = 0; i < result.pixels.size(); ++i) {
        const unsigned noise = random();
        const unsigned rare = random() % 40;
        unsigned value = noise % values;
        switch (seed % 6) {
        case 0:
            value = noise % 256;
            break;
        case 1:
            value = i < width ? value : result.pixels[i - width] + (rare == 0);
            break;
        case 2:
            if (rare == 0)
                source = noise % std::min<std::size_t>(i + 1, 40000);
            value = source > 0 && i >= source ? result.pixels[i - source] : value;
            break;
        case 3:
            value = i / (1 + values * 3) % 7 == 0 ? noise % 3 : 0;
            break;
        case 4:
            value = rare < 6 ? value : 0;
            break;
        }
        result.pixels[i] = static_cast<std::uint8_t>(value);
    }
    return result;
}

std::vector<PngTrial> allTrials(const std::vector<int>& filters, const std::vector<int>& memories) {
    std::vector<PngTrial> trials;
    for (const int filter : filters)
        for (const int memory : memories) {
            for (const int strategy : {0, 1})
                for (int level = 9; level >= 1; --level)
                    trials.push_back({filter, strategy, level, memory});
            trials.push_back({filter, 2, 1, memory});
            trials.push_back({filter, 3, 9, memory});
        }
    return trials;
}

/// So many of the trials.
std::vector<PngTrial> some(std::vector<PngTrial> trials, std::size_t count, unsigned seed) {
    std::shuffle(trials.begin(), trials.end(), std::mt19937(seed));
    trials.resize(std::min(count, trials.size()));
    return trials;
}

/// A foretold size is no estimate. The limit stays out of reach, so that no trial is given up.
void expectForetold(const PngPicture& image, const std::vector<PngTrial>& trials, int windowBits) {
    PngRowsCache rows(image);
    for (const PngTrial& trial : trials) {
        const std::atomic<std::size_t> limit{unlimited};
        const auto idat = deflateRows(*rows.rows(trial.filter), deflateParameters(trial, windowBits), limit);
        ASSERT_TRUE(idat);
        const PngTrialSizes foretold = foretellPngTrials(rows, {trial}, windowBits, unlimited);
        ASSERT_EQ(foretold[0], idat->size())
            << "filter " << trial.filter << " strategy " << trial.strategy << " level " << trial.level
            << " memory " << trial.memory << " window " << windowBits << ", " << image.width << " x "
            << image.height;
    }
}

} // namespace

TEST(DeflateSize, isWhatZlibWrites) {
    std::mt19937 random(1);
    for (unsigned seed = 0; seed < 60; ++seed) {
        const std::uint32_t width = 1 + random() % (1U << random() % 12);
        const std::uint32_t height = 1 + random() % ((1U << 15) / width);
        expectForetold(picture(seed, width, height), some(allTrials({0}, {8, 9}), 8, seed), 15);
        if (HasFatalFailure())
            FAIL() << "seed " << seed;
    }
}

TEST(DeflateSize, isWhatZlibWritesWithUnusualParameters) {
    for (unsigned seed = 0; seed < 12; ++seed)
        for (const int windowBits : {8, 9, 12, 15})
            expectForetold(picture(seed, 97, 231), some(allTrials({0}, {1, 2, 4, 6}), 5, seed), windowBits);
}

// More than a window slides over, more than one block: 200 KB a picture.
TEST(DeflateSize, isWhatZlibWritesOverManyWindows) {
    for (unsigned seed = 0; seed < 6; ++seed)
        expectForetold(picture(seed, 500, 400),
                       {{4, 0, 9, 8}, {4, 1, 6, 9}, {1, 0, 1, 8}, {5, 2, 1, 8}, {5, 3, 9, 9}}, 15);
}

TEST(DeflateSize, ofTheSmallestPictures) {
    for (std::uint32_t width = 1; width <= 300; width += width < 20 ? 1 : 61)
        expectForetold(picture(width, width, 1), some(allTrials({0}, {8}), 6, width), 15);
}

// All together share their search, and give up what can't win.
TEST(DeflateSize, ofTheBestIsKnownHoweverTrialsAreGrouped) {
    for (unsigned seed = 0; seed < 5; ++seed) {
        const PngPicture image = picture(seed, 90, 80);
        const std::vector<PngTrial> trials = allTrials({0, 1, 2, 3, 4, 5}, {7, 8, 9});
        PngRowsCache rows(image);
        const PngTrialSizes measured = measurePngTrials(rows, trials, 15, unlimited);
        const PngTrialSizes foretold = foretellPngTrials(rows, trials, 15, unlimited);
        const auto best = bestPngTrial(trials, measured);
        ASSERT_TRUE(best);
        EXPECT_EQ(bestPngTrial(trials, foretold), best) << seed;
        EXPECT_EQ(foretold[*best], measured[*best]);
        for (std::size_t i = 0; i < trials.size(); ++i)
            if (foretold[i] && measured[i]) {
                EXPECT_EQ(*foretold[i], *measured[i]) << seed << ' ' << i;
            }
        // Nothing is small enough.
        EXPECT_FALSE(bestPngTrial(trials, foretellPngTrials(rows, trials, 15, *measured[*best] - 1)));
        EXPECT_EQ(bestPngTrial(trials, foretellPngTrials(rows, trials, 15, *measured[*best])), best);
    }
}

TEST(DeflateSize, tiesGoToTheLaterTrialButNotFromStrategies2And3) {
    const auto best = [](const std::vector<int>& strategies, const PngTrialSizes& sizes) {
        std::vector<PngTrial> trials;
        for (const int strategy : strategies)
            trials.push_back({0, strategy, 9, 8});
        return bestPngTrial(trials, sizes);
    };
    EXPECT_EQ(best({0, 1, 2, 3}, {10, 10, 11, 11}), 1U);
    EXPECT_EQ(best({0, 1, 2, 3, 0}, {10, 10, 10, 10, 10}), 2U);
    EXPECT_EQ(best({0, 3, 2, 1}, {12, 10, 10, 9}), 3U);
    EXPECT_EQ(best({3, 0, 0}, {10, 10, 10}), 0U);
    EXPECT_EQ(best({0, 0}, {std::nullopt, 7}), 1U);
    EXPECT_EQ(best({0}, {std::nullopt}), std::nullopt);
}
