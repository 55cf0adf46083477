#include "AttemptCache.h"
#include "PackerParameters.h"
#include "TestSprites.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

PackerParameters parametersFor(const QList<Sprite>& sprites, const AlgorithmSettings& settings) {
    PackerParameters parameters;
    parameters.setSprites(sprites);
    parameters.setSize({64, 32});
    parameters.setAlgorithmSettings(&settings);
    return parameters;
}

} // namespace

TEST(AttemptKey, tellsApartWhatMakesAnotherLayout) {
    AlgorithmSettings settings;
    AlgorithmSettings heuristic;
    heuristic.maxRects()->setHeuristic(AlgorithmMaxRectsSettings::Heuristic::AreaFit);
    AlgorithmSettings basic;
    basic.setAlgorithm(AlgorithmSettings::AlgorithmId::Basic);
    AlgorithmSettings descending;
    descending.setAlgorithm(AlgorithmSettings::AlgorithmId::Basic);
    descending.basic()->setOrder(AlgorithmBasicSettings::Order::Descending);

    using Change = std::function<void(PackerParameters&)>;
    const std::vector<Change> changes = {
        [](PackerParameters&) {},
        [](PackerParameters& p) { p.setAllowRotation(true); },
        [](PackerParameters& p) {
            p.setSize({32, 64});
        },
        [](PackerParameters& p) { p.setBorderPadding(1); },
        [](PackerParameters& p) { p.setShapePadding(1); },
        [](PackerParameters& p) { p.setForceSquared(true); },
        [](PackerParameters& p) { p.setForceWordAligned(true); },
        [](PackerParameters& p) { p.setSizeConstraints(1); },
        [&](PackerParameters& p) { p.setAlgorithmSettings(&heuristic); },
        [&](PackerParameters& p) { p.setAlgorithmSettings(&basic); },
        [&](PackerParameters& p) { p.setAlgorithmSettings(&descending); },
        [](PackerParameters& p) {
            p.setSprites(makeSprites({{5, 6}}));
        },
        [](PackerParameters& p) {
            p.setSprites(makeSprites({{6, 5}, {7, 8}}));
        },
        [](PackerParameters& p) {
            p.setSprites({makeSprite(QStringLiteral("b"), {5, 6})});
        },
    };
    const QList<Sprite> sprites = makeSprites({{5, 6}, {7, 8}});
    std::vector<AttemptKey> keys;
    for (const Change& change : changes) {
        PackerParameters parameters = parametersFor(sprites, settings);
        change(parameters);
        keys.emplace_back(parameters);
    }
    for (size_t i = 0; i < keys.size(); ++i) {
        for (size_t j = 0; j < keys.size(); ++j)
            EXPECT_EQ(keys[i] == keys[j], i == j) << i << ' ' << j;
    }
}

TEST(AttemptKey, hashesStepByStep) {
    AlgorithmSettings settings;
    for (int count : {0, 1, 7, 40}) {
        const QList<Sprite> sprites =
            makeSprites(std::vector<QSize>(static_cast<size_t>(count), QSize(5, 9)));
        PackerParameters parameters = parametersFor(sprites, settings);
        parameters.setAllowRotation(true);
        parameters.setBorderPadding(3);
        quint32 hash = 1;
        const auto step = [&hash](quint32 value) { hash = ((hash << 1) | (hash >> 31)) ^ value; };
        for (quint32 value : {64u, 32u, 3u, 0u, qHash(QStringLiteral("MaxRects,Best")), 0u, 0u, 0u})
            step(value);
        for (const Sprite& sprite : sprites) {
            step(5);
            step(9);
            step(qHash(sprite.name()));
        }
        EXPECT_EQ(AttemptKey(parameters).hash(), hash == 0 ? 1 : hash);
    }
}

TEST(AttemptCache, makesAnAttemptOnce) {
    AlgorithmSettings settings;
    AttemptCache cache;
    PackerParameters parameters = parametersFor(makeSprites({{5, 6}, {7, 8}}), settings);
    const PackedResult first = cache.pack(parameters);
    EXPECT_EQ(first.textures().first().sprites().size(), 2);
    // Other sprites of the same names and sizes, and whatever effort: the same attempt, and the same records.
    parameters.setSprites(makeSprites({{5, 6}, {7, 8}}));
    parameters.setFirstFitWins(true);
    const PackedResult second = cache.pack(parameters);
    PackedSprite(second.textures().first().sprites().first()).setPosition({11, 12});
    EXPECT_EQ(first.textures().first().sprites().first().position(), QPoint(11, 12));
    EXPECT_EQ(cache.size(), 1);
    parameters.setSize({65, 32});
    cache.pack(parameters);
    EXPECT_EQ(cache.size(), 2);
}

TEST(AttemptCache, storesWhatWasAskedForInTurn) {
    AlgorithmSettings settings;
    AttemptCache cache;
    PackerParameters parameters = parametersFor(makeSprites({{50, 30}, {10, 20}, {9, 20}}), settings);
    parameters.setAhead(true);
    const PackedResult ahead = cache.pack(parameters);
    EXPECT_EQ(ahead.unplaced().size(), 1);
    EXPECT_EQ(cache.size(), 0);
    parameters.setAhead(false);
    // An attempt that was given up is no result: whoever wants to know what fits makes it.
    parameters.setCompleteOnly(true);
    EXPECT_TRUE(cache.pack(parameters).isEmpty());
    EXPECT_TRUE(cache.pack(parameters).isEmpty());
    EXPECT_EQ(cache.size(), 0);
    parameters.setCompleteOnly(false);
    parameters.setResultAhead(ahead);
    EXPECT_EQ(cache.pack(parameters).unplaced().first().fullName(), ahead.unplaced().first().fullName());
    EXPECT_EQ(cache.size(), 1);
    // It was the very one that had been made ahead.
    PackedSprite(ahead.unplaced().first()).setRotated(true);
    EXPECT_TRUE(cache.pack(parameters).unplaced().first().rotated());
    // And once there is a result, it serves everyone.
    parameters.setCompleteOnly(true);
    EXPECT_EQ(cache.pack(parameters).unplaced().size(), 1);
}

TEST(PackerParameters, copiesBeforeASetterWrites) {
    PackerParameters original;
    EXPECT_EQ(original.size(), QSize(-1, -1));
    PackerParameters copy = original;
    copy.setSize({3, 4});
    copy.setSprites(makeSprites({{5, 6}}));
    EXPECT_EQ(original.size(), QSize(-1, -1));
    EXPECT_TRUE(original.shapes().empty());
    EXPECT_EQ(copy.shapes().size(), 1U);
}
