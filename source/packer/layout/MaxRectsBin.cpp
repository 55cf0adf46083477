#include "MaxRectsBin.h"

#include "LargestSizes.h"
#include "PlacementRun.h"
#include "SaturatedMath.h"

#include <algorithm>
#include <optional>

MaxRectsBin::MaxRectsBin(int width, int height, bool allowRotation) { init(width, height, allowRotation); }

void MaxRectsBin::init(int width, int height, bool allowRotation) {
    m_width = width;
    m_height = height;
    m_allowRotation = allowRotation;
    m_usedRectangles.clear();
    m_free.init(width, height);
}

void MaxRectsBin::insert(const std::vector<QSize>& sizes, std::vector<PackRect>& placed,
                         Heuristic heuristic) {
    insert(WaitingSizes(sizes, m_allowRotation), placed, heuristic, {});
}

void MaxRectsBin::insert(WaitingSizes waiting, std::vector<PackRect>& placed, Heuristic heuristic,
                         const Stops& stops) {
    init(m_width, m_height, m_allowRotation);
    placed.clear();
    if (stops.hopeless && waiting.placelessCount() > 0)
        return;
    if (waiting.hasFlat()) {
        insertOneByOne(waiting, heuristic);
        placed = m_usedRectangles;
        return;
    }
    PlacementRun run(m_free, waiting, {m_width, m_height}, heuristic);
    std::optional<LargestSizes> largest;
    if (stops.hopeless)
        largest.emplace(waiting);
    PackRect rect;
    while (!(largest && !largest->allFit(m_free)) && !(stops.cancelled && stops.cancelled()) &&
           run.placeNext(rect)) {
        m_usedRectangles.push_back(rect);
        if (largest && run.endedGroup() >= 0)
            largest->groupEnded(run.endedGroup());
    }
    placed = m_usedRectangles;
}

/// The plain way, for sizes with one side of 0: such a one takes no room, two lie in one place, and it
/// touches itself. It may fit by its score and still have no height to be placed with.
void MaxRectsBin::insertOneByOne(WaitingSizes& waiting, Heuristic heuristic) {
    while (waiting.count() > 0) {
        Score bestScore = noFit;
        PackRect bestRect;
        int best = -1;
        for (int number = 0; number < static_cast<int>(waiting.groups().size()); ++number) {
            const WaitingSizes::Group& group = waiting.groups()[static_cast<size_t>(number)];
            if (group.isEmpty())
                continue;
            Score groupScore{};
            const PackRect rect = score(group.width, group.height, heuristic, groupScore);
            const bool earlierOfEqual =
                best >= 0 && !(bestScore < groupScore) && waiting.index(number) < waiting.index(best);
            if (groupScore < bestScore || earlierOfEqual) {
                bestScore = groupScore;
                bestRect = rect;
                best = number;
            }
        }
        if (best < 0)
            return;
        placeRect(bestRect);
        waiting.takeFrom(best);
    }
}

PackRect MaxRectsBin::score(int width, int height, Heuristic heuristic, Score& score) const {
    score = noFit;
    PackRect best;
    // What has no image has no size to place either.
    if (width < 0 || height < 0)
        return best;
    const auto tryFit = [&](const PackRect& free, int w, int h, bool rotated) {
        if (w > free.width || h > free.height)
            return;
        const Score candidate = rate(free, w, h, heuristic);
        if (candidate < score) {
            score = candidate;
            best = {free.x, free.y, w, h, rotated};
        }
    };
    for (const PackRect& free : m_free.list()) {
        tryFit(free, width, height, false);
        if (m_allowRotation)
            tryFit(free, height, width, true);
    }
    if (best.height == 0)
        score = noFit;
    return best;
}

MaxRectsBin::Score MaxRectsBin::rate(const PackRect& free, int width, int height, Heuristic heuristic) const {
    const auto [small, large] = std::minmax({free.width - width, free.height - height});
    switch (heuristic) {
    case ShortSideFit:
        return {small, large};
    case LongSideFit:
        return {large, small};
    case AreaFit:
        return {saturated::toInt(qint64{free.width} * free.height - qint64{width} * height), small};
    case BottomLeft:
        return {free.y + height, free.x};
    case ContactPoint:
        return {saturated::toInt(-contactScore(free.x, free.y, width, height)), noFit.second};
    }
    return noFit;
}

qint64 MaxRectsBin::contactScore(int x, int y, int width, int height) const {
    qint64 contact = 0;
    if (x == 0 || x + width == m_width)
        contact += height;
    if (y == 0 || y + height == m_height)
        contact += width;
    for (const PackRect& used : m_usedRectangles) {
        if (used.x == x + width)
            contact += sharedLength(y, y + height, used.y, used.bottom());
        if (used.right() == x)
            contact += sharedLength(y, y + height, used.y, used.bottom());
        if (used.y == y + height)
            contact += sharedLength(x, x + width, used.x, used.right());
        if (used.bottom() == y)
            contact += sharedLength(x, x + width, used.x, used.right());
    }
    return contact;
}

void MaxRectsBin::placeRect(const PackRect& rect) {
    m_free.take(rect, {0, 0});
    m_usedRectangles.push_back(rect);
}
