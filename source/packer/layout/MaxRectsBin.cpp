#include "MaxRectsBin.h"

#include "SaturatedMath.h"

#include <QHash>

#include <algorithm>
#include <cstdlib>

namespace {

/// Waiting rectangles of one size. All score the same, and of equal scores the earliest in the list is placed
/// first.
struct Kind {
    int width;
    int height;
    std::vector<size_t> indices; ///< in the list of all sizes, the last one in front
};

std::vector<Kind> sortIntoKinds(const std::vector<QSize>& sizes) {
    std::vector<Kind> kinds;
    QHash<QPair<int, int>, size_t> known;
    for (size_t i = sizes.size(); i-- > 0;) {
        const QPair<int, int> size(sizes[i].width(), sizes[i].height());
        const auto found = known.constFind(size);
        const size_t kind = found == known.constEnd() ? kinds.size() : *found;
        if (kind == kinds.size()) {
            kinds.push_back({size.first, size.second, {}});
            known.insert(size, kind);
        }
        kinds[kind].indices.push_back(i);
    }
    return kinds;
}

} // namespace

MaxRectsBin::MaxRectsBin(int width, int height, bool allowRotation) { init(width, height, allowRotation); }

void MaxRectsBin::init(int width, int height, bool allowRotation) {
    m_width = width;
    m_height = height;
    m_allowRotation = allowRotation;
    m_usedRectangles.clear();
    m_freeRectangles.assign(1, PackRect{0, 0, width, height, false});
    for (EdgeMap* edges : {&m_leftEdges, &m_rightEdges, &m_topEdges, &m_bottomEdges})
        edges->clear();
}

void MaxRectsBin::insert(const std::vector<QSize>& sizes, std::vector<PackRect>& placed,
                         Heuristic heuristic) {
    placed.clear();
    std::vector<Kind> kinds = sortIntoKinds(sizes);
    while (!kinds.empty()) {
        Score bestScore = noFit;
        PackRect bestRect;
        auto best = kinds.end();
        for (auto kind = kinds.begin(); kind != kinds.end(); ++kind) {
            Score kindScore{};
            const PackRect rect = score(kind->width, kind->height, heuristic, kindScore);
            const bool earlierOfEqual = best != kinds.end() && !(bestScore < kindScore) &&
                                        kind->indices.back() < best->indices.back();
            if (kindScore < bestScore || earlierOfEqual) {
                bestScore = kindScore;
                bestRect = rect;
                best = kind;
            }
        }
        if (best == kinds.end())
            return;
        placeRect(bestRect);
        placed.push_back(bestRect);
        best->indices.pop_back();
        if (best->indices.empty())
            kinds.erase(best);
    }
}

template <typename Rate>
PackRect MaxRectsBin::search(int width, int height, Score& best, Rate rate) const {
    PackRect bestRect;
    const auto tryFit = [&](const PackRect& free, int w, int h, bool rotated) {
        if (w > free.width || h > free.height)
            return;
        const Score candidate = rate(free, w, h);
        if (candidate < best) {
            best = candidate;
            bestRect = {free.x, free.y, w, h, rotated};
        }
    };
    for (const PackRect& free : m_freeRectangles) {
        tryFit(free, width, height, false);
        if (m_allowRotation)
            tryFit(free, height, width, true);
    }
    return bestRect;
}

PackRect MaxRectsBin::score(int width, int height, Heuristic heuristic, Score& score) const {
    score = noFit;
    PackRect rect;
    // What has no image has no size to place either.
    if (width < 0 || height < 0)
        return rect;
    switch (heuristic) {
    case ShortSideFit:
        rect = search(width, height, score, [](const PackRect& free, int w, int h) {
            const auto [small, large] = std::minmax({free.width - w, free.height - h});
            return Score{small, large};
        });
        break;
    case LongSideFit:
        rect = search(width, height, score, [](const PackRect& free, int w, int h) {
            const auto [small, large] = std::minmax({free.width - w, free.height - h});
            return Score{large, small};
        });
        break;
    case AreaFit:
        rect = search(width, height, score, [](const PackRect& free, int w, int h) {
            const qint64 rest = qint64{free.width} * free.height - qint64{w} * h;
            return Score{saturated::toInt(rest), std::min(free.width - w, free.height - h)};
        });
        break;
    case BottomLeft:
        rect = search(width, height, score, [](const PackRect& free, int, int h) {
            return Score{free.y + h, free.x};
        });
        break;
    case ContactPoint:
        rect = search(width, height, score, [this](const PackRect& free, int w, int h) {
            return Score{saturated::toInt(-contactScore(free.x, free.y, w, h)), noFit.second};
        });
        break;
    }
    if (rect.height == 0)
        score = noFit;
    return rect;
}

qint64 MaxRectsBin::contactScore(int x, int y, int width, int height) const {
    qint64 contact = 0;
    if (x == 0 || x + width == m_width)
        contact += height;
    if (y == 0 || y + height == m_height)
        contact += width;
    contact += m_leftEdges.contact(x + width, y, y + height);
    contact += m_rightEdges.contact(x, y, y + height);
    contact += m_topEdges.contact(y + height, x, x + width);
    contact += m_bottomEdges.contact(y, x, x + width);
    return contact;
}

void MaxRectsBin::placeRect(const PackRect& rect) {
    m_splitRectangles.clear();
    const auto isSplit = [&](const PackRect& free) { return split(free, rect); };
    m_freeRectangles.erase(std::remove_if(m_freeRectangles.begin(), m_freeRectangles.end(), isSplit),
                           m_freeRectangles.end());
    appendMaximal();
    m_usedRectangles.push_back(rect);
    m_leftEdges.insert(rect.x, rect.y, rect.bottom());
    m_rightEdges.insert(rect.right(), rect.y, rect.bottom());
    m_topEdges.insert(rect.y, rect.x, rect.right());
    m_bottomEdges.insert(rect.bottom(), rect.x, rect.right());
}

/// Collects the maximal parts of a free rectangle around a used one. False if the two don't overlap.
bool MaxRectsBin::split(const PackRect& free, const PackRect& used) {
    if (used.x >= free.right() || used.right() <= free.x || used.y >= free.bottom() ||
        used.bottom() <= free.y)
        return false;
    if (used.y > free.y)
        m_splitRectangles.push_back({free.x, free.y, free.width, used.y - free.y});
    if (used.bottom() < free.bottom())
        m_splitRectangles.push_back({free.x, used.bottom(), free.width, free.bottom() - used.bottom()});
    if (used.x > free.x)
        m_splitRectangles.push_back({free.x, free.y, used.x - free.x, free.height});
    if (used.right() < free.right())
        m_splitRectangles.push_back({used.right(), free.y, free.right() - used.right(), free.height});
    return true;
}

/// Appends those split rectangles that lie in no other free rectangle; of equal ones the last. The rectangles
/// that were free before need no look: none lies in another, and so none lies in a part of another.
void MaxRectsBin::appendMaximal() {
    const size_t unsplit = m_freeRectangles.size();
    for (size_t i = 0; i < m_splitRectangles.size(); ++i) {
        const PackRect& rect = m_splitRectangles[i];
        const auto liesIn = [&](const PackRect& other) { return rect.isWithin(other); };
        if (std::any_of(m_freeRectangles.begin(),
                        m_freeRectangles.begin() + static_cast<std::ptrdiff_t>(unsplit), liesIn))
            continue;
        bool maximal = true;
        for (size_t j = 0; maximal && j < m_splitRectangles.size(); ++j) {
            const PackRect& other = m_splitRectangles[j];
            maximal = j == i || !liesIn(other) || (j < i && other.isWithin(rect));
        }
        if (maximal)
            m_freeRectangles.push_back(rect);
    }
}
