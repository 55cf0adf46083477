#include "PngOptimizerTest.h"

#include "PngTrialSets.h"

#include <QColorSpace>

#include <gmock/gmock.h>

#include <map>

using PngFile::Trial;

namespace {

std::map<std::string, QImage> kinds() {
    const auto gray = [](int x, int y) { return qRgba(x + y, x + y, x + y, 255); };
    const auto wide = [](int x, int y) { return qRgba(x * 4, y * 5, x ^ y, x + y); };
    QImage deep = drawn(QImage::Format_RGBA64, wide);
    deep.setPixelColor(3, 3, QColor::fromRgba64(1, 2, 3, 40000));
    QImage profiled = drawn(QImage::Format_ARGB32, gray);
    profiled.setColorSpace(QColorSpace::SRgb);
    return {{"alpha", soft(0)},
            {"opaque", drawn(QImage::Format_ARGB32, [&](int x, int y) { return wide(x, y) | 0xFF000000U; })},
            {"grey", drawn(QImage::Format_ARGB32, gray)},
            {"grey with profile", profiled},
            {"2 colours", colors(2)},
            {"4 colours", colors(4)},
            {"16 colours", colors(16)},
            {"256 colours", colors(256)},
            {"257 colours", colors(257)},
            {"16 bit", deep},
            {"16 bit of 8", drawn(QImage::Format_RGBA64, wide)},
            {"grey 8", drawn(QImage::Format_Grayscale8, gray)},
            {"grey 16", drawn(QImage::Format_Grayscale16, wide)},
            {"indexed", colors(7, QImage::Format_Indexed8)},
            {"bitmap", colors(2, QImage::Format_Mono)},
            {"premultiplied", drawn(QImage::Format_ARGB32_Premultiplied, wide)},
            {"noise", noise({60, 50})},
            {"one pixel", drawn(QImage::Format_ARGB32, wide, {1, 1})}};
}

/// The trials of presets 2 to 7, in their order.
std::vector<Trial> presetTrials(int level) {
    std::vector<Trial> trials;
    const std::vector<int> memories = level % 2 ? std::vector<int>{9, 8} : std::vector<int>{8};
    for (int filter = 0; filter <= 5; ++filter) {
        if (level < 4 && filter > 0 && filter < 5)
            continue;
        for (int strategy = 0; strategy <= 3; ++strategy)
            for (int zlibLevel = 9; zlibLevel >= (level < 6 ? 9 : 1); --zlibLevel)
                for (const int memory : memories) {
                    const bool isUsed = strategy < 2 || zlibLevel == 9;
                    if (isUsed)
                        trials.push_back({filter, strategy, strategy == 2 ? 1 : zlibLevel, memory});
                }
    }
    return trials;
}

std::vector<std::array<int, 4>> numbersOf(const std::vector<PngTrial>& trials) {
    std::vector<std::array<int, 4>> numbers;
    for (const PngTrial& trial : trials)
        numbers.push_back({trial.filter, trial.strategy, trial.level, trial.memory});
    return numbers;
}

std::vector<std::array<int, 4>> numbersOf(const std::vector<Trial>& trials) {
    std::vector<std::array<int, 4>> numbers;
    for (const Trial& trial : trials)
        numbers.push_back({trial.filter, trial.strategy, trial.level, trial.memory});
    return numbers;
}

} // namespace

TEST_F(PngOptimizerTest, keepsPixelsAndTheRestWithEveryPreset) {
    for (const auto& [name, image] : kinds()) {
        const QByteArray plain = toolkitFile(image);
        for (int level = -1; level <= 8; ++level) {
            const QByteArray file = saved(image, level);
            EXPECT_EQ(PngFile::pixels(file), PngFile::pixels(plain)) << name << ' ' << level;
            EXPECT_EQ(QImage(path()).convertToFormat(QImage::Format_RGBA64),
                      QImage::fromData(plain).convertToFormat(QImage::Format_RGBA64))
                << name << ' ' << level;
            for (const char* type : {"pHYs", "tEXt", "iCCP"})
                EXPECT_EQ(PngFile::chunk(file, type), PngFile::chunk(plain, type)) << name << ' ' << type;
            if (file != plain) {
                EXPECT_EQ(PngFile::idatChunks(file), 1) << name << ' ' << level;
            }
        }
    }
}

// The rule as it is told: every trial written by libpng, one after the other.
TEST_F(PngOptimizerTest, writesTheWinnerOfTrialsMadeOneAfterTheOther) {
    for (const auto& [name, image] : kinds()) {
        const QByteArray plain = toolkitFile(image);
        for (int level = 2; level <= 7; ++level) {
            const QByteArray file = saved(image, level);
            const bool isReduced = PngFile::header(file).colorType != PngFile::header(plain).colorType ||
                                   PngFile::header(file).bitDepth != PngFile::header(plain).bitDepth;
            const QByteArray original = PngFile::chunk(plain, "IDAT");
            const QByteArray best =
                PngFile::bestOf(file, presetTrials(level),
                                isReduced ? ~std::size_t{0} : static_cast<std::size_t>(original.size()));
            const bool isAnew = isReduced || (!best.isNull() && best.size() < original.size());
            EXPECT_EQ(PngFile::chunk(file, "IDAT"), isAnew ? best : original) << name << ' ' << level;
            if (!isAnew) {
                EXPECT_EQ(file, plain) << name << ' ' << level;
            }
        }
    }
}

TEST_F(PngOptimizerTest, makesTheTrialsOfItsPresets) {
    for (int level = 2; level <= 7; ++level) {
        PngOptions options;
        options.optimLevel = static_cast<std::int16_t>(level);
        EXPECT_EQ(numbersOf(pngTrials(options, false)), numbersOf(presetTrials(level))) << level;
        options.filterSet = 1U << 5;
        EXPECT_EQ(numbersOf(pngTrials(options, true)), numbersOf(presetTrials(level))) << level;
    }
    EXPECT_EQ(presetTrials(2).size(), 8U);
    EXPECT_EQ(presetTrials(7).size(), 240U);
    PngOptions options;
    EXPECT_EQ(numbersOf(pngTrials(options, false)), numbersOf(presetTrials(2)));
    options.optimLevel = 99;
    EXPECT_EQ(numbersOf(pngTrials(options, false)), numbersOf(presetTrials(7)));
    for (const int level : {0, 1}) {
        options.optimLevel = static_cast<std::int16_t>(level);
        options.filterSet = level ? 1U << 5 : 0;
        EXPECT_THAT(numbersOf(pngTrials(options, false)), testing::ElementsAre(std::array{5, 1, 9, 8}));
        EXPECT_THAT(numbersOf(pngTrials(options, true)), testing::ElementsAre(std::array{0, 0, 9, 8}));
    }
}

TEST_F(PngOptimizerTest, makesOneTrialWithPreset1) {
    for (const auto& [name, image] : kinds()) {
        const QByteArray file = saved(image, 1);
        const PngFile::Header header = PngFile::header(file);
        const bool isIndexed = header.colorType == 3 || header.bitDepth < 8;
        if (file != toolkitFile(image)) {
            EXPECT_EQ(PngFile::chunk(file, "IDAT"),
                      PngFile::written(file, isIndexed ? Trial{0, 0, 9, 8} : Trial{5, 1, 9, 8}))
                << name;
        }
    }
    EXPECT_NE(saved(soft(0), 1), toolkitFile(soft(0)));
}

TEST_F(PngOptimizerTest, copiesWhatDoesNotGetSmaller) {
    // Several IDAT chunks, none of which is touched.
    const QImage image = noise({80, 70});
    ASSERT_GT(PngFile::idatChunks(toolkitFile(image)), 1);
    EXPECT_EQ(saved(image, 2), toolkitFile(image));
    for (const auto& [name, kind] : kinds())
        EXPECT_EQ(saved(kind, 0), toolkitFile(kind)) << name;
    EXPECT_EQ(saved(soft(0), {{QStringLiteral("NeedIDATRecording"), true}}), toolkitFile(soft(0)));
}

TEST_F(PngOptimizerTest, interlacesOnDemand) {
    for (const auto& [name, image] : kinds()) {
        const QByteArray file = saved(
            image, {{QStringLiteral("NeedInterlacing"), true}, {QStringLiteral("PresetOptimization"), 3}});
        EXPECT_EQ(PngFile::header(file).interlace, 1) << name;
        EXPECT_EQ(PngFile::pixels(file), PngFile::pixels(toolkitFile(image))) << name;
        EXPECT_EQ(PngFile::chunk(file, "IDAT"), PngFile::bestOf(file, presetTrials(3), ~std::size_t{0}))
            << name;
    }
}
