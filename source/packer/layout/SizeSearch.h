#pragma once

#include "SearchAttempts.h"
#include "Sprite.h"

/// What the size of a sheet depends on. Sides and paddings in pixels.
struct SizeSearchInput {
    QSize maxSize;
    QSize fixedSize{-1, -1}; ///< a side above 0 is fixed, others are free
    /// AlgorithmSettings::SizeConstraints in effect: POT for formats that take nothing else.
    int sizeConstraints = 0;
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

/// What is the same for all attempts of a search.
PackerParameters parametersFor(const SizeSearchInput& input);

/// Finds the size of the sheet: coarse sizes first, from the smallest area upwards, then, unless the sides
/// have to be powers of two, a bisection of both sides. Runs in the worker thread; attempts that the search
/// will make in any case, or very likely, are made ahead on all cores.
class SizeSearch {
public:
    struct Callbacks {
        /// Makes an attempt. Those with PackerParameters::ahead() come from several threads, all others from
        /// the search's own, in the order of its steps.
        SearchAttempts::Attempt attempt;
        /// Asked between attempts, from several threads; the search then ends with what it has, attempts
        /// that were made ahead of the step that it has got to included.
        std::function<bool()> aborted;
        /// Told in the search's own thread.
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
    using SizesByArea = std::map<qint64, QList<QSize>>;
    enum class Side { Width, Height };
    enum class Order { WidthFirst, HeightFirst };
    enum class Turn { Own, Ahead };

    PackedResult searchCoarse();
    SizesByArea coarseSizes() const;
    bool lookAhead(const SizesByArea& sizes);
    bool tryAhead(const QList<QSize>& sizes, bool completeOnly);
    bool attemptSizes(const QList<QSize>& sizes, bool completeOnly, PackedResult& best);
    bool goesOn(QSize size, bool completeOnly, Turn turn) const;
    PackedResult shrinkBoth(const PackedResult& coarse);
    void shrinkAhead(const PackedResult& coarse, float threshold);
    PackedResult shrink(const PackedResult& result, Order order, float threshold, Turn turn);
    PackedResult shrink(const PackedResult& result, Side side, float threshold, Turn turn);
    PackedResult attempt(QSize size, bool completeOnly, Turn turn);
    void reportBest(const PackedResult& result) const;
    qint64 usableArea(QSize size) const;
    bool isPot() const;
    float freeThreshold() const;
    bool triesAllHeuristics() const;

    SizeSearchInput m_input;
    Callbacks m_callbacks;
    SearchAttempts m_attempts;
};
