#pragma once

#include "PackedResult.h"
#include "PackerParameters.h"

#include <functional>

/// What the size of a sheet depends on. Sides and paddings in pixels.
struct SizeSearchInput {
    QSize maxSize;
    QSize fixedSize{-1, -1}; ///< a side above 0 is fixed, others are free
    int sizeConstraints =
        0; ///< AlgorithmSettings::SizeConstraints in effect: POT for formats that take nothing else
    bool forceSquared = false; ///< in effect, too
    bool forceWordAligned = false;
    bool allowRotation = false;
    int outputFormat = 0; ///< SettingsBase::OutputFormat
    int borderPadding = 0;
    int shapePadding = 0;
    int baseFactor = 1;                                   ///< both sides are multiples of it; at least 1
    const AlgorithmSettings* algorithmSettings = nullptr; ///< not owned
    QList<Sprite> sprites;
};

/// Finds the size of the sheet: coarse sizes first, from the smallest area upwards, then, unless the sides
/// have to be powers of two, a bisection of both sides. Runs in the worker thread.
class SizeSearch {
public:
    struct Callbacks {
        std::function<PackedResult(const PackerParameters&)> attempt;
        std::function<bool()> aborted; ///< asked between attempts; the search then ends with what it has
        std::function<void(int, const QString&)> activity;
    };

    SizeSearch(const SizeSearchInput& input, const Callbacks& callbacks);

    /// The best result; the one with the fewest unplaced sprites if no size holds all. Throws Error (Parse)
    /// if a fixed side conflicts with a constraint.
    PackedResult run();

    /// The nearest size at or below the given one that meets all constraints, 0 x 0 if there is none. Throws
    /// as run().
    QSize normalizeSize(QSize size) const;

private:
    enum class Side { Width, Height };

    PackedResult searchCoarse();
    QList<QSize> coarseSizes() const;
    void attemptSizes(QList<QSize> sizes, PackedResult& best);
    PackedResult shrinkBoth(const PackedResult& coarse);
    PackedResult shrink(const PackedResult& result, Side side, float threshold);
    PackedResult attempt(QSize size);
    void reportBest(const PackedResult& result) const;
    bool canHold(QSize size) const;
    float freeThreshold() const;
    bool triesAllHeuristics() const;

    SizeSearchInput m_input;
    Callbacks m_callbacks;
    PackerParameters m_parameters;
};
