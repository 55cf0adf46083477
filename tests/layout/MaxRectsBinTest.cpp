#include "MaxRectsBin.h"
#include "PlainMaxRects.h"
#include "RandomSizes.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using Sizes = std::vector<QSize>;

constexpr MaxRectsBin::Heuristic allHeuristics[] = {MaxRectsBin::ShortSideFit, MaxRectsBin::LongSideFit,
                                                    MaxRectsBin::AreaFit, MaxRectsBin::BottomLeft,
                                                    MaxRectsBin::ContactPoint};

std::vector<PackRect> insert(MaxRectsBin& bin, const Sizes& sizes, MaxRectsBin::Heuristic heuristic) {
    std::vector<PackRect> placed;
    bin.insert(sizes, placed, heuristic);
    return placed;
}

} // namespace

TEST(MaxRectsBin, placesAsThePlainMethod) {
    std::mt19937 random(20130214);
    MaxRectsBin bin(0, 0, false);
    int incomplete = 0;
    for (int run = 0; run < 360; ++run) {
        Sizes sizes = randomSizes(random, static_cast<Character>(run % characterCount), run < 330 ? 60 : 200);
        QSize size(std::uniform_int_distribution<int>(8, 250)(random),
                   std::uniform_int_distribution<int>(8, 250)(random));
        // Large ones too, with areas past what an int holds.
        const int scale = run / characterCount % 4 == 3 ? 1 << random() % 11 : 1;
        size *= scale;
        for (QSize& scaled : sizes)
            scaled *= scale;
        for (bool rotation : {false, true}) {
            for (auto heuristic : allHeuristics) {
                PlainMaxRects plain(size, rotation,
                                    run / characterCount % 2 ? PlainMaxRects::Contact::AllPlaced
                                                             : PlainMaxRects::Contact::EdgeMaps);
                const std::vector<PackRect> expected = plain.insert(sizes, heuristic);
                bin.init(size.width(), size.height(), rotation);
                ASSERT_EQ(insert(bin, sizes, heuristic), expected)
                    << "run " << run << ", heuristic " << heuristic;
                ASSERT_EQ(bin.usedRectangles(), expected);
                incomplete += expected.size() < sizes.size() ? 1 : 0;

                bin.init(size.width(), size.height(), rotation);
                for (const PackRect& rect : expected)
                    bin.placeRect(rect);
                ASSERT_EQ(bin.freeRectangles(), plain.freeRectangles()) << "run " << run;

                // Giving up early must not miss a complete placement.
                std::vector<PackRect> placed;
                bin.insert(WaitingSizes(sizes, rotation), placed, heuristic, {true, {}});
                ASSERT_TRUE(expected.size() < sizes.size() || placed.size() == sizes.size());
                ASSERT_TRUE(std::equal(placed.begin(), placed.end(), expected.begin()));
            }
        }
    }
    // Sets that don't fit have to be among them.
    EXPECT_GT(incomplete, 500);
}

TEST(MaxRectsBin, endsEarlyWhenTold) {
    // With the first of the squares in place the large one fits nowhere any more.
    const Sizes sizes = {{20, 20}, {20, 20}, {20, 20}, {20, 20}, {20, 20}, {100, 90}, {1, 1}};
    MaxRectsBin bin(100, 100, false);
    EXPECT_EQ(insert(bin, sizes, MaxRectsBin::BottomLeft).size(), 6U);
    std::vector<PackRect> placed;
    bin.insert(WaitingSizes(sizes, false), placed, MaxRectsBin::BottomLeft, {true, {}});
    EXPECT_EQ(placed.size(), 2U);
    int asked = 0;
    bin.insert(WaitingSizes(sizes, false), placed, MaxRectsBin::BottomLeft,
               {false, [&] { return ++asked > 3; }});
    EXPECT_EQ(placed.size(), 3U);
}

TEST(MaxRectsBin, ratesOneRectangle) {
    struct Row {
        MaxRectsBin::Heuristic heuristic;
        MaxRectsBin::Score score;
    };
    const Row rows[] = {{MaxRectsBin::ShortSideFit, {60, 90}},
                        {MaxRectsBin::LongSideFit, {90, 60}},
                        {MaxRectsBin::AreaFit, {100 * 70 - 100, 60}},
                        {MaxRectsBin::BottomLeft, {10, 0}},
                        {MaxRectsBin::ContactPoint, {-20, 2147483647}}};
    for (const Row& row : rows) {
        const MaxRectsBin bin(100, 70, false);
        MaxRectsBin::Score score{};
        const PackRect rect = bin.score(10, 10, row.heuristic, score);
        EXPECT_EQ(rect, (PackRect{0, 0, 10, 10, false}));
        EXPECT_EQ(score.first, row.score.first) << row.heuristic;
        EXPECT_EQ(score.second, row.score.second) << row.heuristic;
    }
}

TEST(MaxRectsBin, countsContactWithEveryNeighbour) {
    MaxRectsBin bin(100, 100, false);
    bin.placeRect({0, 0, 40, 30, false});
    bin.placeRect({70, 0, 30, 50, false});
    bin.placeRect({40, 60, 30, 40, false});
    // The hole between the three: left contact 30, right contact 50, top border 30, bottom contact 30.
    MaxRectsBin::Score score{};
    const PackRect rect = bin.score(30, 60, MaxRectsBin::ContactPoint, score);
    EXPECT_EQ(rect, (PackRect{40, 0, 30, 60, false}));
    EXPECT_EQ(score.first, -(30 + 50 + 30 + 30));
}

TEST(MaxRectsBin, turnsOnlyWhereAllowed) {
    for (auto heuristic : allHeuristics) {
        MaxRectsBin upright(50, 20, false);
        EXPECT_TRUE(insert(upright, {{20, 50}}, heuristic).empty());
        EXPECT_EQ(insert(upright, {{50, 20}}, heuristic), (std::vector<PackRect>{{0, 0, 50, 20, false}}));
        MaxRectsBin turning(50, 20, true);
        EXPECT_EQ(insert(turning, {{20, 50}}, heuristic), (std::vector<PackRect>{{0, 0, 50, 20, true}}));
        EXPECT_TRUE(turning.freeRectangles().empty());
    }
}

TEST(MaxRectsBin, holdsNothingWithoutSpaceOrExtent) {
    const int largest = 2147483647;
    for (auto heuristic : allHeuristics) {
        for (QSize size : {QSize(0, 0), QSize(-196, -196), QSize(10, -1), QSize(-2147483647 - 1, largest)}) {
            MaxRectsBin bin(size.width(), size.height(), true);
            EXPECT_TRUE(insert(bin, {{1, 1}, {30, 2}, {0, 0}, {-1, -1}}, heuristic).empty());
        }
        MaxRectsBin bin(10, 10, true);
        EXPECT_TRUE(insert(bin, {{0, 0}, {4, 0}, {-1, -1}, {-1, 5}}, MaxRectsBin::BottomLeft).empty());
        // The largest bin that a number can tell overflows nothing.
        MaxRectsBin huge(largest, largest, true);
        EXPECT_EQ(insert(huge, {{largest, 10}, {7, 5}}, heuristic).size(), 2U);
    }
}
