#pragma once

#include "PackRect.h"

#include <QSize>

#include <vector>

/// The maximal rectangles method in its simplest loops, with nothing remembered between two looks: the
/// yardstick for every faster way.
class PlainMaxRects {
public:
    PlainMaxRects(QSize bin, bool allowRotation);

    /// Places the sizes, globally best first; heuristics are numbered 1 to 5.
    std::vector<PackRect> insert(std::vector<QSize> sizes, int heuristic);

    const std::vector<PackRect>& freeRectangles() const { return m_free; }

private:
    struct Found {
        PackRect rect;
        int score1 = 2147483647;
        int score2 = 2147483647;
    };

    Found score(QSize size, int heuristic) const;
    void rate(Found& best, const PackRect& free, QSize size, bool rotated, int heuristic) const;
    int contact(const PackRect& rect) const;
    void place(const PackRect& rect);
    bool split(PackRect free, const PackRect& used);
    void prune();

    QSize m_bin;
    bool m_allowRotation;
    std::vector<PackRect> m_free;
    std::vector<PackRect> m_used;
};
