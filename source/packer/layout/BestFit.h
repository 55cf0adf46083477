#pragma once

#include "PackRect.h"
#include "WaitingSizes.h"

#include <compare>
#include <limits>

/// Lower is better, `first` before `second`.
struct FitScore {
    int first = std::numeric_limits<int>::max();
    int second = std::numeric_limits<int>::max();

    friend auto operator<=>(const FitScore&, const FitScore&) = default;
};

/// The waiting size that fits a free rectangle best. Of equal scores the earliest in the list of sizes is the
/// best, and upright comes before turned.
struct Fit {
    FitScore score;
    int index = std::numeric_limits<int>::max(); ///< in the list of sizes
    int group = -1;                              ///< -1 while nothing fits
    int width = 0;                               ///< as it lies, in pixels
    int height = 0;
    bool turned = false;
};

/// Collects the best fit.
class BestFit {
public:
    explicit BestFit(const WaitingSizes& waiting) : m_waiting(waiting) {}

    const FitScore& score() const { return m_fit.score; }
    const Fit& fit() const { return m_fit; }

    void consider(FitScore score, int width, int height, const SizeTable::Way& way) {
        if (score > m_fit.score)
            return;
        const int index = m_waiting.index(way.group);
        if (score == m_fit.score &&
            (index > m_fit.index || (index == m_fit.index && way.turned >= m_fit.turned)))
            return;
        m_fit = {score, index, way.group, width, height, way.turned};
    }

private:
    const WaitingSizes& m_waiting;
    Fit m_fit;
};

// The best fit by one heuristic: see MaxRectsBin::Heuristic. They look at as few sizes as their scores let
// them: in a line of the table of sizes a longer other side never scores worse.
Fit fitByShortSide(const WaitingSizes& waiting, const PackRect& free);
Fit fitByLongSide(const WaitingSizes& waiting, const PackRect& free);
Fit fitByArea(const WaitingSizes& waiting, const PackRect& free);
Fit fitByBottomLeft(const WaitingSizes& waiting, const PackRect& free);
