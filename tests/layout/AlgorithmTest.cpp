#include "AlgorithmBasic.h"
#include "AlgorithmMaxRects.h"
#include "AlgorithmRegistry.h"
#include "Error.h"
#include "FillResult.h"
#include "PackerParameters.h"
#include "PlainAlgorithm.h"
#include "TestSprites.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>

namespace {

using Heuristic = AlgorithmMaxRectsSettings::Heuristic;
using SortBy = AlgorithmBasicSettings::SortBy;
using Order = AlgorithmBasicSettings::Order;

constexpr int anySize = 1;
constexpr int pot = 0;

PackerParameters parametersFor(const QList<Sprite>& sprites, QSize size, const AlgorithmSettings& settings) {
    PackerParameters parameters;
    parameters.setSprites(sprites);
    parameters.setSize(size);
    parameters.setSizeConstraints(anySize);
    parameters.setAlgorithmSettings(&settings);
    return parameters;
}

std::vector<QSize> randomSizes(std::mt19937& random, int count, int largest) {
    std::uniform_int_distribution<int> side(1, largest);
    std::vector<QSize> sizes;
    for (int i = 0; i < count; ++i)
        sizes.emplace_back(side(random), side(random));
    return sizes;
}

/// The toolkit's quicksort, written down anew: the order of equal keys comes from these very steps.
void plainToolkitSort(std::vector<int>& list, int start, int end, const std::function<bool(int, int)>& less) {
    const auto at = [&](int i) -> int& { return list[static_cast<size_t>(i)]; };
    while (end - start >= 2) {
        const int span = end - start;
        int last = end - 1;
        int low = start;
        int high = last - 1;
        const int pivot = start + span / 2;
        if (less(at(last), at(start)))
            std::swap(at(last), at(start));
        if (span == 2)
            return;
        if (less(at(pivot), at(start)))
            std::swap(at(pivot), at(start));
        if (less(at(last), at(pivot)))
            std::swap(at(last), at(pivot));
        if (span == 3)
            return;
        std::swap(at(pivot), at(last));
        while (low < high) {
            while (low < high && less(at(low), at(last)))
                ++low;
            while (high > low && less(at(last), at(high)))
                --high;
            if (low >= high)
                break;
            std::swap(at(low++), at(high--));
        }
        if (less(at(low), at(last)))
            ++low;
        std::swap(at(last), at(low));
        plainToolkitSort(list, start, low, less);
        start = low + 1;
    }
}

} // namespace

TEST(AlgorithmRegistry, findsPackersById) {
    const AlgorithmRegistry& registry = AlgorithmRegistry::instance();
    EXPECT_EQ(registry.names(), QStringList({QStringLiteral("MaxRects"), QStringLiteral("Basic")}));
    EXPECT_EQ(registry.find(0).name(), QStringLiteral("MaxRects"));
    EXPECT_EQ(registry.find(1).name(), QStringLiteral("Basic"));
    EXPECT_EQ(registry.find(1).clone()->id(), 1);
    try {
        registry.find(2);
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), 18);
        EXPECT_EQ(error.message(), QStringLiteral("Unknown algorithm"));
    }
}

TEST(AlgorithmMaxRects, buildsAResult) {
    AlgorithmSettings settings;
    settings.maxRects()->setHeuristic(Heuristic::BottomLeft);
    QList<Sprite> sprites = makeSprites({{10, 12}, {10, 12}, {40, 12}, {12, 10}});
    sprites[1].addAlias(makeSprite(QStringLiteral("twin"), {10, 12}));
    PackerParameters parameters = parametersFor(sprites, {48, 18}, settings);
    parameters.setBorderPadding(3);
    parameters.setShapePadding(2);
    parameters.setAllowRotation(true);
    // The bin is 44 x 14: three lie side by side and leave no room for the bar. The first place, made for the
    // first sprite in the list, goes to the one that has this size as it stands.
    const PackedResult result = AlgorithmMaxRects().pack(parameters);
    EXPECT_EQ(describe(result), "s000@15,3* s001@27,3* s003@3,3 -s002");
    const PackedTexture texture = result.textures().first();
    EXPECT_EQ(texture.size(), QSize(48, 18));
    EXPECT_EQ(texture.borderPadding(), 3);
    EXPECT_EQ(texture.shapePadding(), 2);
    EXPECT_EQ(texture.allSprites()[2].fullName(), QStringLiteral("twin"));
    EXPECT_EQ(texture.sprites()[2].paddedSize(), QSize(12, 10));
    EXPECT_EQ(texture.sprites()[2].id(), sprites[3].id());
}

TEST(AlgorithmMaxRects, tellsTurnedSpritesBySizeAlone) {
    AlgorithmSettings settings;
    settings.maxRects()->setHeuristic(Heuristic::ShortSideFit);
    PackerParameters parameters = parametersFor(makeSprites({{20, 50}}), {50, 20}, settings);
    EXPECT_EQ(describe(AlgorithmMaxRects().pack(parameters)), "-s000");
    parameters.setAllowRotation(true);
    const PackedResult turned = AlgorithmMaxRects().pack(parameters);
    EXPECT_EQ(describe(turned), "s000@0,0*");
    EXPECT_EQ(turned.textures().first().sprites().first().paddedSize(), QSize(20, 50));
    // The bin takes one of the two, turned for the first in the list; but the other one fits it as it stands.
    parameters.setSprites(makeSprites({{20, 50}, {50, 20}}));
    EXPECT_EQ(describe(AlgorithmMaxRects().pack(parameters)), "s001@0,0 -s000");
    // A square is never reported as turned.
    parameters.setSprites(makeSprites({{20, 20}}));
    EXPECT_EQ(describe(AlgorithmMaxRects().pack(parameters)), "s000@0,0");
}

TEST(AlgorithmMaxRects, choosesTheBestHeuristic) {
    std::mt19937 random(4711);
    AlgorithmSettings settings;
    int chosen[6] = {};
    for (int run = 0; run < 150; ++run) {
        const std::vector<QSize> sizes = randomSizes(random, 3 + run % 25, 20);
        const QSize bin(std::uniform_int_distribution<int>(20, 70)(random),
                        std::uniform_int_distribution<int>(20, 70)(random));
        PackerParameters parameters = parametersFor(makeSprites(sizes), bin, settings);
        parameters.setAllowRotation(run % 2);
        parameters.setFirstFitWins(run % 3 == 0);
        parameters.setSizeConstraints(run % 7 == 0 ? pot : anySize);
        parameters.setSideBySide(run % 5);
        const std::vector<PackRect> best = PlainAlgorithm().place(parameters, bin);
        ASSERT_EQ(AlgorithmMaxRects().place(parameters, bin), best) << run;
        for (int heuristic = 1; heuristic <= 5; ++heuristic)
            chosen[heuristic] += PlainMaxRects(bin, run % 2).insert(sizes, heuristic) == best;

        // Asked for a complete layout alone, it gives the same or none.
        parameters.setCompleteOnly(true);
        const bool complete = best.size() == sizes.size();
        ASSERT_EQ(AlgorithmMaxRects().pack(parameters).isEmpty(), !complete) << run;
        ASSERT_TRUE(!complete || AlgorithmMaxRects().place(parameters, bin) == best) << run;
    }
    for (int heuristic = 1; heuristic <= 5; ++heuristic)
        EXPECT_GT(chosen[heuristic], 0) << heuristic;
}

TEST(AlgorithmMaxRects, survivesPaddingsThatLeaveNoSpace) {
    AlgorithmSettings settings;
    PackerParameters parameters = parametersFor(makeSprites({{1, 1}, {2, 3}}), {64, 64}, settings);
    for (int border : {33, 1000000, 2147483647, -2147483647}) {
        parameters.setBorderPadding(border);
        for (int shape : {0, -2147483647 - 1, 2147483647}) {
            parameters.setShapePadding(shape);
            const PackedResult result = AlgorithmMaxRects().pack(parameters);
            EXPECT_EQ(result.unplaced().size() + result.textures().first().sprites().size(), 2);
        }
    }
}

TEST(AlgorithmBasic, fillsRows) {
    AlgorithmSettings settings;
    settings.setAlgorithm(AlgorithmSettings::AlgorithmId::Basic);
    settings.basic()->setSortBy(SortBy::Name);
    const auto pack = [&](const std::vector<QSize>& sizes, QSize size, int border, int shape) {
        PackerParameters parameters = parametersFor(makeSprites(sizes), size, settings);
        parameters.setBorderPadding(border);
        parameters.setShapePadding(shape);
        parameters.setAllowRotation(true);
        return describe(AlgorithmBasic().pack(parameters));
    };
    EXPECT_EQ(pack({}, {100, 100}, 2, 2), "");
    EXPECT_EQ(pack({{98, 10}}, {100, 100}, 2, 2), "s000@2,2");
    EXPECT_EQ(pack({{50, 5}, {97, 10}, {20, 20}}, {100, 100}, 2, 0), "s000@2,2 s001@2,7 s002@2,17");
    EXPECT_EQ(pack({{99, 10}}, {100, 100}, 2, 2), "-s000");
    // Too high for what is left, and the row goes on as if nothing had been tried.
    EXPECT_EQ(pack({{30, 10}, {30, 50}, {20, 15}, {60, 30}, {49, 5}}, {100, 40}, 0, 0),
              "s000@0,0 s002@30,0 s004@50,0 -s001 -s003");
    EXPECT_EQ(pack({{60, 10}, {60, 40}, {60, 5}}, {100, 45}, 0, 0), "s000@0,0 s002@0,10 -s001");
}

TEST(AlgorithmBasic, sortsByEveryKeyAsTheToolkitDoes) {
    std::mt19937 random(99);
    AlgorithmSettings settings;
    settings.setAlgorithm(AlgorithmSettings::AlgorithmId::Basic);
    const auto key = [](QSize size, SortBy by) {
        switch (by) {
        case SortBy::Width:
            return size.width();
        case SortBy::Height:
            return size.height();
        case SortBy::Area:
            return size.width() * size.height();
        default:
            return size.width() + size.height();
        }
    };
    for (int run = 0; run < 20; ++run) {
        // Few sizes, so that most keys are equal.
        const std::vector<QSize> sizes = randomSizes(random, 5 + 7 * run, 4);
        const QList<Sprite> sprites = makeSprites(sizes);
        for (SortBy by : {SortBy::Width, SortBy::Height, SortBy::Area, SortBy::Circumference}) {
            for (Order order : {Order::Ascending, Order::Descending}) {
                std::vector<int> expected(sizes.size());
                for (size_t i = 0; i < sizes.size(); ++i)
                    expected[i] = static_cast<int>(i);
                plainToolkitSort(expected, 0, static_cast<int>(sizes.size()), [&](int a, int b) {
                    const int first = key(sizes[static_cast<size_t>(a)], by);
                    const int second = key(sizes[static_cast<size_t>(b)], by);
                    return order == Order::Ascending ? first < second : second < first;
                });
                settings.basic()->setSortBy(by);
                settings.basic()->setOrder(order);
                // One long row shows the order.
                const PackedResult result =
                    AlgorithmBasic().pack(parametersFor(sprites, {100000, 10}, settings));
                std::vector<int> ids;
                for (const PackedSprite& sprite : result.textures().first().sprites())
                    ids.push_back(sprite.id() - sprites.first().id());
                ASSERT_EQ(ids, expected);
            }
        }
    }
}

TEST(AlgorithmBasic, takesTheFirstCompleteKeyOrTheLast) {
    AlgorithmSettings settings;
    settings.setAlgorithm(AlgorithmSettings::AlgorithmId::Basic);
    const QList<Sprite> sprites = makeSprites({{4, 6}, {9, 2}, {5, 1}});
    const auto pack = [&](SortBy by, QSize size) {
        settings.basic()->setSortBy(by);
        return describe(AlgorithmBasic().pack(parametersFor(sprites, size, settings)));
    };
    // Room for everything in any order.
    EXPECT_EQ(pack(SortBy::Best, {50, 50}), "s000@0,0 s001@4,0 s002@13,0");
    EXPECT_EQ(pack(SortBy::Best, {50, 50}), pack(SortBy::Name, {50, 50}));
    // By name and by height everything needs three rows; by width the small ones share one.
    EXPECT_EQ(pack(SortBy::Name, {9, 8}), "s000@0,0 s001@0,6 -s002");
    EXPECT_EQ(pack(SortBy::Width, {9, 8}), "s000@0,0 s002@4,0 s001@0,6");
    EXPECT_EQ(pack(SortBy::Best, {9, 8}), pack(SortBy::Width, {9, 8}));
    // No key places all: the last one's layout, whatever the others held.
    EXPECT_EQ(pack(SortBy::Best, {9, 7}), pack(SortBy::Circumference, {9, 7}));
}
