#include "MaxRectsBin.h"
#include "PlainMaxRects.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using Sizes = std::vector<QSize>;

constexpr MaxRectsBin::Heuristic allHeuristics[] = {MaxRectsBin::ShortSideFit, MaxRectsBin::LongSideFit,
                                                    MaxRectsBin::AreaFit, MaxRectsBin::BottomLeft,
                                                    MaxRectsBin::ContactPoint};

/// Random sizes of several characters: one size, a few sizes, bars, anything, and some without an extent.
Sizes randomSizes(std::mt19937& random, int character) {
    const auto number = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    Sizes sizes(static_cast<size_t>(number(1, 60)));
    const int edge = number(3, 40);
    for (QSize& size : sizes) {
        switch (character) {
        case 0:
            size = QSize(edge, edge + 5);
            break;
        case 1:
            size = QSize(4 * number(1, 3), 4 * number(1, 3));
            break;
        case 2:
            size = number(0, 1) ? QSize(number(1, 4), number(20, 90)) : QSize(number(20, 90), number(1, 4));
            break;
        case 3:
            size = QSize(number(1, 60), number(1, 60));
            break;
        default:
            size = QSize(number(0, 3), number(0, 3));
            break;
        }
    }
    return sizes;
}

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
    for (int run = 0; run < 300; ++run) {
        const Sizes sizes = randomSizes(random, run % 5);
        const QSize size(std::uniform_int_distribution<int>(8, 250)(random),
                         std::uniform_int_distribution<int>(8, 250)(random));
        for (bool rotation : {false, true}) {
            for (auto heuristic : allHeuristics) {
                PlainMaxRects plain(size, rotation);
                const std::vector<PackRect> expected = plain.insert(sizes, heuristic);
                bin.init(size.width(), size.height(), rotation);
                const std::vector<PackRect> placed = insert(bin, sizes, heuristic);
                ASSERT_EQ(placed, expected) << "run " << run << ", heuristic " << heuristic;
                ASSERT_EQ(bin.usedRectangles(), expected);
                ASSERT_EQ(bin.freeRectangles(), plain.freeRectangles()) << "run " << run;
                incomplete += placed.size() < sizes.size() ? 1 : 0;
            }
        }
    }
    // Sets that don't fit have to be among them.
    EXPECT_GT(incomplete, 500);
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
