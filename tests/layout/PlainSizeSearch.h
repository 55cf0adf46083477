#pragma once

#include "SizeSearch.h"

/// The search for the sheet's size in its simplest form, step after step: the yardstick for the real one.
class PlainSizeSearch {
public:
    using Attempt = std::function<PackedResult(QSize, bool firstFitWins)>;

    PlainSizeSearch(const SizeSearchInput& input, const Attempt& attempt)
        : m_input(input), m_attempt(attempt) {}

    PackedResult run();

    /// Throws the text of a conflict as a QString.
    QSize normalize(int width, int height) const;

private:
    PackedResult shrinkWidth(PackedResult current, float threshold);
    PackedResult shrinkHeight(PackedResult current, float threshold);
    bool allHeuristics() const;

    SizeSearchInput m_input;
    Attempt m_attempt;
    bool m_firstFitWins = false;
};
