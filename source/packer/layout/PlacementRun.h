#pragma once

#include "CandidateQueue.h"
#include "ContactFit.h"
#include "FreeSpace.h"
#include "MaxRectsBin.h"

#include <memory>

/// Places sizes into an empty bin, the best of all that wait first.
///
/// A free rectangle is rated once, when it comes up: what fits it best is known until that size is used up.
/// Only contact scores change with what is placed beside, and they never fall; so such a rectangle first
/// enters the queue with a bound of its score, and is rated when nothing in front of it is left.
class PlacementRun {
public:
    /// Both have to outlive the run. None of the sizes may be flat.
    PlacementRun(FreeSpace& free, WaitingSizes& waiting, QSize bin, MaxRectsBin::Heuristic heuristic);

    /// Places the best size. False if none of those that wait fits; `placed` is then left alone.
    bool placeNext(PackRect& placed);

    /// The group of the last placement if that was its last size, or -1.
    int endedGroup() const { return m_endedGroup; }

private:
    const CandidateQueue::Candidate* findBest();
    Fit fit(const PackRect& free);
    void enter(int slot);
    void rate(int slot);
    void setBound(int slot, qint64 contact);
    void raiseBounds(const PackRect& placed);

    FreeSpace& m_free;
    WaitingSizes& m_waiting;
    MaxRectsBin::Heuristic m_heuristic;
    std::unique_ptr<ContactFit> m_contact; ///< only for ContactPoint
    std::vector<qint64> m_bounds;          ///< by slot, in pixels; only for ContactPoint
    CandidateQueue m_queue;
    int m_endedGroup = -1;
};
