#pragma once

#include "PackerParameters.h"

#include <functional>
#include <map>
#include <mutex>

/// The attempts of one size search.
///
/// The search makes them in the order of its steps, in its own thread. Before that, threads may make those
/// ahead that the steps will likely ask for. A step that finds its attempt made takes the result over, and
/// one that was made in vain leaves no trace: all is as if there had been the steps alone.
class SearchAttempts {
public:
    using Attempt = std::function<PackedResult(const PackerParameters&)>;

    SearchAttempts(const PackerParameters& parameters, const Attempt& attempt)
        : m_parameters(parameters), m_attempt(attempt) {}

    /// Sum of the sprites' padded areas, in pixels.
    qint64 spriteArea() const { return m_parameters.sharedShapes()->area(); }

    // For all attempts from now on; see PackerParameters.
    void setFirstFitWins(bool wins);
    void setSideBySide(bool sideBySide) { m_parameters.setSideBySide(sideBySide); }

    /// The attempt of a step. With `completeOnly` it may be empty if not all sprites fit.
    PackedResult make(QSize size, bool completeOnly);

    /// Whether make() would take over what was made ahead.
    bool isMadeAhead(QSize size, bool completeOnly) const { return find(size, completeOnly).has_value(); }

    /// An attempt ahead of its step. May be called by several threads.
    PackedResult makeAhead(QSize size, bool completeOnly);

private:
    std::optional<PackedResult> find(QSize size, bool completeOnly) const;

    PackerParameters m_parameters;
    Attempt m_attempt;
    mutable std::mutex m_mutex;
    std::map<std::pair<int, int>, PackedResult> m_resultsAhead; ///< by width and height
};
