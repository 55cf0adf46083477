#pragma once

#include "BestFit.h"
#include "FreeSpace.h"

#include <functional>

/// The space of one attempt of the maximal rectangles method (J. Jylänki, "A Thousand Ways to Pack the Bin",
/// 2010): the free space is a list of overlapping maximal free rectangles, and each placement is the best
/// among all that wait. The order of that list decides ties and so is part of the result. All measures in
/// pixels.
class MaxRectsBin {
public:
    /// Values of AlgorithmMaxRectsSettings::Heuristic; Best is not one way of scoring and has no place here.
    enum Heuristic : int { ShortSideFit = 1, LongSideFit = 2, AreaFit = 3, BottomLeft = 4, ContactPoint = 5 };

    using Score = FitScore;
    static constexpr Score noFit{};

    /// What ends an insertion before all is placed that fits.
    struct Stops {
        bool hopeless = false;           ///< as soon as one of the sizes fits nowhere
        std::function<bool()> cancelled; ///< asked before each placement, unless empty
    };

    MaxRectsBin(int width, int height, bool allowRotation);

    /// Empties the bin and gives it a size. A side below 1 holds nothing.
    void init(int width, int height, bool allowRotation);

    /// Empties the bin and places rectangles of the given sizes, best first; `placed` gets them in placing
    /// order. What doesn't fit is dropped. Waiting sizes have to allow the same turning as the bin.
    void insert(const std::vector<QSize>& sizes, std::vector<PackRect>& placed, Heuristic heuristic);
    void insert(WaitingSizes waiting, std::vector<PackRect>& placed, Heuristic heuristic, const Stops& stops);

    /// The best place for a rectangle of this size, noFit in `score` if there is none.
    PackRect score(int width, int height, Heuristic heuristic, Score& score) const;

    /// Takes a rectangle out of the free space.
    void placeRect(const PackRect& rect);

    const std::vector<PackRect>& usedRectangles() const { return m_usedRectangles; }

    /// After an insertion those that can hold none of the sizes that waited last may be missing.
    std::vector<PackRect> freeRectangles() const { return m_free.list(); }

private:
    Score rate(const PackRect& free, int width, int height, Heuristic heuristic) const;
    qint64 contactScore(int x, int y, int width, int height) const;
    void insertOneByOne(WaitingSizes& waiting, Heuristic heuristic);

    int m_width = 0;
    int m_height = 0;
    bool m_allowRotation = false;
    std::vector<PackRect> m_usedRectangles;
    FreeSpace m_free;
};
