#pragma once

#include "SizeSearch.h"

#include <QMap>

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
    enum Side { Width, Height };

    void constrain(int& w, int& h) const;
    QMap<qint64, QList<QSize>> coarseSizes() const;
    PackedResult searchCoarse();
    PackedResult shrink(PackedResult current, Side side, float threshold);
    bool allHeuristics() const;

    SizeSearchInput m_input;
    Attempt m_attempt;
    bool m_firstFitWins = false;
};
