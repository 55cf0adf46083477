#include "AttemptCache.h"
#include "Error.h"
#include "PlainLayout.h"
#include "RandomSizes.h"
#include "TestSprites.h"

#include <QThreadPool>

#include <gtest/gtest.h>

#include <atomic>

namespace {

using AlgorithmId = AlgorithmSettings::AlgorithmId;
using Format = SettingsBase::OutputFormat;
using Mode = AlgorithmSettings::AlgorithmFreeSizeMode;

enum Constraint { Pot, AnySize, Npot };

/// A search through a cache of its own that writes down what it does in its own turn.
struct SearchRun {
    explicit SearchRun(const SizeSearchInput& input) {
        SizeSearch search(input, {[this](const PackerParameters& parameters) {
                                      if (!parameters.ahead()) {
                                          sizes.append(parameters.size());
                                          firstFits.append(parameters.firstFitWins());
                                      }
                                      return cache.pack(parameters);
                                  },
                                  [] { return false; },
                                  [this](int level, const QString& text) {
                                      messages.append(QStringLiteral("%1 ").arg(level) + text);
                                  }});
        result = search.run();
    }

    AttemptCache cache;
    QList<QSize> sizes;
    QList<bool> firstFits;
    QStringList messages;
    PackedResult result;
};

/// The global pool, and with it all that runs side by side, has so many threads for the time being.
class ThreadCount {
public:
    explicit ThreadCount(int count) { QThreadPool::globalInstance()->setMaxThreadCount(count); }
    ~ThreadCount() { QThreadPool::globalInstance()->setMaxThreadCount(m_before); }

private:
    int m_before = QThreadPool::globalInstance()->maxThreadCount();
};

SizeSearch silentSearch(const SizeSearchInput& input) {
    return {input,
            {[](const PackerParameters&) { return PackedResult(); }, [] { return false; },
             [](int, const QString&) {}}};
}

/// The text of the conflict, or the size.
QString normalized(const SizeSearchInput& input, QSize size) {
    try {
        const QSize normal = silentSearch(input).normalizeSize(size);
        return QStringLiteral("%1x%2").arg(normal.width()).arg(normal.height());
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), 39);
        return error.message();
    }
}

QString plainNormalized(const SizeSearchInput& input, QSize size) {
    try {
        const QSize normal = PlainSizeSearch(input, {}).normalize(size.width(), size.height());
        return QStringLiteral("%1x%2").arg(normal.width()).arg(normal.height());
    } catch (const QString& conflict) {
        return conflict;
    }
}

/// `settings` get the algorithm of the input.
SizeSearchInput randomInput(std::mt19937& random, AlgorithmSettings& settings) {
    settings.setFreeSizeMode(static_cast<Mode>(random() % 3));
    settings.setAlgorithm(static_cast<AlgorithmId>(random() % 6 == 0));
    if (random() % 3 == 0)
        settings.maxRects()->setHeuristic(AlgorithmMaxRectsSettings::Heuristic::AreaFit);
    SizeSearchInput input;
    input.algorithmSettings = &settings;
    input.sizeConstraints = static_cast<int>(random() % 3);
    input.forceSquared = random() % 4 == 0;
    input.forceWordAligned = random() % 2;
    input.allowRotation = random() % 2;
    input.outputFormat = static_cast<int>(random() % 14);
    input.borderPadding = static_cast<int>(random() % 3);
    input.shapePadding = static_cast<int>(random() % 3);
    input.baseFactor = random() % 4 == 0 ? 4 : 1;
    input.maxSize = QSize(20 + static_cast<int>(random() % 240), 20 + static_cast<int>(random() % 240));
    if (random() % 5 == 0)
        input.fixedSize.setWidth(20 + static_cast<int>(random() % 100));
    if (random() % 8 == 0)
        input.fixedSize.setHeight(20 + static_cast<int>(random() % 100));
    input.sprites =
        makeSprites(randomSizes(random, static_cast<Character>(random() % (characterCount - 1)), 50));
    return input;
}

} // namespace

TEST(SizeSearch, normalizesBySimpleRules) {
    AlgorithmSettings settings;
    SizeSearchInput input;
    input.algorithmSettings = &settings;
    input.sizeConstraints = Npot;
    EXPECT_EQ(normalized(input, {64, 100}), QStringLiteral("63x100"));
    EXPECT_EQ(normalized(input, {2, 100}), QStringLiteral("0x0"));
    input.sizeConstraints = Pot;
    EXPECT_EQ(normalized(input, {65, 127}), QStringLiteral("64x64"));
    EXPECT_EQ(normalized(input, {0, 64}), QStringLiteral("0x0"));
    EXPECT_EQ(normalized(input, {-5, -5}), QStringLiteral("0x0"));
    EXPECT_EQ(normalized(input, {2147483647, 2147483647}), QStringLiteral("1073741824x1073741824"));
    input.sizeConstraints = AnySize;
    input.forceWordAligned = true;
    EXPECT_EQ(normalized(input, {33, 33}), QStringLiteral("33x33"));
    input.outputFormat = static_cast<int>(Format::RGB565);
    EXPECT_EQ(normalized(input, {33, 33}), QStringLiteral("32x33"));
    // The square takes the odd side, which alignment makes even, and so both become even.
    input.forceSquared = true;
    EXPECT_EQ(normalized(input, {51, 35}), QStringLiteral("34x34"));
    input.baseFactor = 4;
    EXPECT_EQ(normalized(input, {51, 35}), QStringLiteral("32x32"));
    input.baseFactor = 100;
    EXPECT_EQ(normalized(input, {51, 35}), QStringLiteral("0x0"));
}

TEST(SizeSearch, refusesFixedSidesInConflict) {
    struct Row {
        Constraint constraint;
        bool squared;
        bool aligned;
        Format format;
        QSize fixed;
        const char* outcome;
    };
    const Row rows[] = {
        {Npot,
         false,
         false,
         Format::RGBA8888,
         {64, -1},
         "Fixed size width is in conflict with size constraint NPOT."},
        {Npot,
         false,
         false,
         Format::RGBA8888,
         {0, 1},
         "Fixed size height is in conflict with size constraint NPOT."},
        {Npot, false, false, Format::RGBA8888, {65, 63}, "65x63"},
        {Pot,
         false,
         false,
         Format::RGBA8888,
         {65, -1},
         "Fixed size width is in conflict with size constraint POT."},
        {Pot,
         false,
         false,
         Format::RGBA8888,
         {64, 63},
         "Fixed size height is in conflict with size constraint POT."},
        {Pot, false, false, Format::RGBA8888, {64, -1}, "64x32"},
        {AnySize,
         false,
         true,
         Format::RGB565,
         {65, -1},
         "Fixed size width is in conflict with force word aligned textures."},
        {AnySize, false, true, Format::RGBA8888, {65, -1}, "65x40"},
        {AnySize, false, true, Format::ALPHA_INTENSITY, {-1, 65}, "40x65"},
        {AnySize,
         true,
         false,
         Format::RGBA8888,
         {64, -1},
         "Fixed size width/height is in conflict with force squared"},
        {AnySize,
         false,
         false,
         Format::PVRTC2,
         {64, 32},
         "Fixed size width/height is in conflict with force squared"},
        {AnySize, true, false, Format::RGBA8888, {40, -1}, "40x40"},
    };
    AlgorithmSettings settings;
    for (const Row& row : rows) {
        SizeSearchInput input;
        input.algorithmSettings = &settings;
        input.sizeConstraints = row.constraint;
        input.forceSquared = row.squared;
        input.forceWordAligned = row.aligned;
        input.outputFormat = static_cast<int>(row.format);
        input.fixedSize = row.fixed;
        EXPECT_EQ(normalized(input, {40, 40}), QString::fromLatin1(row.outcome));
    }
}

TEST(SizeSearch, normalizesAsThePlainRules) {
    AlgorithmSettings settings;
    std::mt19937 random(5);
    for (int run = 0; run < 4000; ++run) {
        SizeSearchInput input;
        input.algorithmSettings = &settings;
        input.sizeConstraints = static_cast<int>(random() % 3);
        input.forceSquared = random() % 2;
        input.forceWordAligned = random() % 2;
        input.outputFormat = static_cast<int>(random() % 14);
        input.baseFactor = random() % 2 ? 1 : 1 + static_cast<int>(random() % 12);
        if (random() % 4 == 0)
            input.fixedSize.setWidth(static_cast<int>(random() % 140));
        if (random() % 4 == 0)
            input.fixedSize.setHeight(static_cast<int>(random() % 140));
        const QSize size(static_cast<int>(random() % 300) - 10, static_cast<int>(random() % 300) - 10);
        ASSERT_EQ(normalized(input, size), plainNormalized(input, size)) << run;
    }
}

TEST(SizeSearch, searchesAsThePlainSteps) {
    std::mt19937 random(17);
    int conflicts = 0;
    int partial = 0;
    for (int run = 0; run < 300; ++run) {
        AlgorithmSettings settings;
        const SizeSearchInput input = randomInput(random, settings);
        const ThreadCount threads(1 + run % 5);
        try {
            const PlainLayout plain(input);
            SearchRun search(input);
            ASSERT_EQ(search.sizes, plain.sizes) << run;
            ASSERT_EQ(search.firstFits, plain.firstFits) << run;
            ASSERT_EQ(describe(search.result), describe(plain.result)) << run;
            partial += !plain.result.allPlaced();
            // Nothing is in the cache but what the steps put there, and an attempt that was given up is made
            // when it is wanted.
            ASSERT_LE(search.cache.size(), static_cast<int>(plain.attempts.size()));
            PackerParameters parameters = plain.parameters;
            for (const auto& [size, attempt] : plain.attempts) {
                parameters.setSize({size.first, size.second});
                const int known = search.cache.size();
                ASSERT_EQ(describe(search.cache.pack(parameters)), describe(attempt)) << run;
                ASSERT_TRUE(search.cache.size() == known || !attempt.allPlaced()) << run;
            }
        } catch (const QString& conflict) {
            ++conflicts;
            try {
                SearchRun search(input);
                FAIL() << run;
            } catch (const Error& error) {
                EXPECT_EQ(error.message(), conflict);
            }
        }
    }
    // All ends have to be among the runs.
    EXPECT_GT(conflicts, 10);
    EXPECT_GT(partial, 10);
}

TEST(SizeSearch, stopsAtTheFirstPowersOfTwoThatHoldAll) {
    AlgorithmSettings settings;
    SizeSearchInput input;
    input.algorithmSettings = &settings;
    input.maxSize = {2048, 2048};
    input.sprites = makeSprites(std::vector<QSize>(8, QSize(128, 128)));
    const SearchRun search(input);
    // Of the area 131,072 the squarest comes first, and of equal ones the narrower.
    EXPECT_EQ(search.sizes, QList<QSize>({{256, 512}}));
    EXPECT_TRUE(search.result.allPlaced());
    EXPECT_EQ(search.messages, QStringList({QStringLiteral("2 Best result: 256x512. Optimizing...")}));
}

TEST(SizeSearch, shrinksToTheSprite) {
    AlgorithmSettings settings;
    SizeSearchInput input;
    input.algorithmSettings = &settings;
    input.sizeConstraints = AnySize;
    input.maxSize = {2048, 2048};
    input.sprites = makeSprites({{100, 37}});
    EXPECT_EQ(SearchRun(input).result.textures().first().size(), QSize(100, 37));
    settings.setFreeSizeMode(Mode::Fast);
    const PackedResult fast = SearchRun(input).result;
    EXPECT_LT(fast.freeRatio(), 0.2F);
    input.fixedSize = QSize(500, -1);
    EXPECT_EQ(SearchRun(input).result.textures().first().size(), QSize(500, 37));
}

TEST(SizeSearch, endsForAbsurdInput) {
    const int largest = 2147483647;
    const QSize maxima[] = {{0, 0}, {-1, -1}, {-largest - 1, 5}, {1, 1}, {largest, largest}, {largest, 1}};
    for (QSize maximum : maxima) {
        for (QSize fixed : {QSize(-1, -1), QSize(largest, -1), QSize(3, 3), QSize(largest, largest)}) {
            for (int padding : {0, 1000, largest, -largest - 1}) {
                AlgorithmSettings settings;
                settings.maxRects()->setHeuristic(AlgorithmMaxRectsSettings::Heuristic::BottomLeft);
                SizeSearchInput input;
                input.algorithmSettings = &settings;
                input.maxSize = maximum;
                input.fixedSize = fixed;
                input.sizeConstraints = AnySize;
                input.borderPadding = padding;
                input.shapePadding = padding / 3;
                input.sprites = makeSprites({{2, 2}, {3, 1}});
                const SearchRun search(input);
                EXPECT_LT(search.sizes.size(), 1500);
                EXPECT_FALSE(search.result.isEmpty());
            }
        }
    }
}

TEST(SizeSearch, stopsWhenAborted) {
    AlgorithmSettings settings;
    SizeSearchInput input;
    input.algorithmSettings = &settings;
    input.sizeConstraints = AnySize;
    input.maxSize = {64, 64};
    input.sprites = makeSprites({{10, 10}, {9, 9}});
    for (const int threads : {1, 2}) {
        const ThreadCount count(threads);
        bool wasAborted = true;
        int allowed = 0;
        for (; wasAborted; ++allowed) {
            std::atomic<int> begun = 0;
            std::atomic<bool> foundAll = false;
            AttemptCache cache;
            SizeSearch search(input, {[&](const PackerParameters& parameters) {
                                          begun += parameters.resultAhead() ? 0 : 1;
                                          const PackedResult result = cache.pack(parameters);
                                          foundAll = foundAll || (!result.isEmpty() && result.allPlaced());
                                          return result;
                                      },
                                      [&] { return begun >= allowed; }, [](int, const QString&) {}});
            const PackedResult result = search.run();
            // Threads that have asked already go on.
            EXPECT_LT(begun, allowed + threads);
            // What was found isn't lost, though it was found ahead of its step.
            EXPECT_EQ(!result.isEmpty() && result.allPlaced(), foundAll);
            EXPECT_EQ(cache.size() > 0, foundAll);
            wasAborted = begun >= allowed;
        }
        EXPECT_GT(allowed, 4);
    }
}
