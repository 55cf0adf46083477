#pragma once

#include "BestFit.h"

#include <QtGlobal>

/// For every free rectangle the waiting size that fits it best, and of all these the best in front. Of equal
/// scores that is the size that stands first in the list of sizes, and then the free rectangle that stands
/// first in its list. Free rectangles are named by their slots in FreeSpace.
class CandidateQueue {
public:
    struct Candidate {
        Fit fit;
        quint32 order; ///< of the free rectangle
        int slot;
        quint32 stamp; ///< of set()
    };

    /// Enters the candidate of a free rectangle, in place of the one that it had.
    void set(int slot, quint32 order, const Fit& fit);

    /// Takes out the candidate of a free rectangle, if it has one.
    void remove(int slot);

    /// The best candidate, or null; good until the next change.
    const Candidate* best();

private:
    quint32& stamp(int slot);
    bool isOutdated(const Candidate& candidate) const;
    void sweep();

    std::vector<Candidate> m_heap; ///< outdated candidates stay until they come to the front
    std::vector<quint32> m_stamps; ///< by slot: of its candidate, 0 if it has none
    quint32 m_lastStamp = 0;
    size_t m_count = 0; ///< of candidates that aren't outdated
};
