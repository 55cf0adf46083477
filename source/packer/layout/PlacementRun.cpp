#include "PlacementRun.h"

#include "SaturatedMath.h"

PlacementRun::PlacementRun(FreeSpace& free, WaitingSizes& waiting, QSize bin,
                           MaxRectsBin::Heuristic heuristic)
    : m_free(free), m_waiting(waiting), m_heuristic(heuristic) {
    if (heuristic == MaxRectsBin::ContactPoint)
        m_contact = std::make_unique<ContactFit>(bin, waiting);
    for (int slot = 0; slot < free.slotCount(); ++slot)
        enter(slot);
}

bool PlacementRun::placeNext(PackRect& placed) {
    const CandidateQueue::Candidate* best = findBest();
    if (!best)
        return false;
    const PackRect free = m_free.at(best->slot);
    const Fit fit = best->fit;
    placed = {free.x, free.y, fit.width, fit.height, fit.turned};
    m_endedGroup = m_waiting.takeFrom(fit.group) ? fit.group : -1;
    m_free.take(placed, m_waiting.least());
    for (int slot : m_free.removed())
        m_queue.remove(slot);
    if (m_contact) {
        m_contact->addPlaced(placed);
        raiseBounds(placed);
    }
    for (int slot : m_free.added())
        enter(slot);
    return true;
}

/// The best candidate, rated anew until it stands for what waits now.
const CandidateQueue::Candidate* PlacementRun::findBest() {
    const CandidateQueue::Candidate* best = m_queue.best();
    // A bound has no group. The score of a size that was used meanwhile can only be followed by a worse one,
    // or by an equal one later in the list.
    while (best && (best->fit.group < 0 || m_waiting.index(best->fit.group) != best->fit.index)) {
        rate(best->slot);
        best = m_queue.best();
    }
    return best;
}

Fit PlacementRun::fit(const PackRect& free) {
    switch (m_heuristic) {
    case MaxRectsBin::ShortSideFit:
        return fitByShortSide(m_waiting, free);
    case MaxRectsBin::LongSideFit:
        return fitByLongSide(m_waiting, free);
    case MaxRectsBin::AreaFit:
        return fitByArea(m_waiting, free);
    case MaxRectsBin::BottomLeft:
        return fitByBottomLeft(m_waiting, free);
    case MaxRectsBin::ContactPoint:
        return m_contact->find(free);
    }
    return {};
}

void PlacementRun::enter(int slot) {
    if (m_contact)
        setBound(slot, m_contact->bound(m_free.at(slot)));
    else
        rate(slot);
}

void PlacementRun::rate(int slot) {
    const Fit best = fit(m_free.at(slot));
    if (best.group < 0) {
        m_queue.remove(slot);
        m_free.drop(slot);
        return;
    }
    if (m_contact)
        m_bounds[static_cast<size_t>(slot)] = -qint64{best.score.first};
    m_queue.set(slot, m_free.order(slot), best);
}

void PlacementRun::setBound(int slot, qint64 contact) {
    m_bounds.resize(static_cast<size_t>(m_free.slotCount()));
    m_bounds[static_cast<size_t>(slot)] = contact;
    Fit bound;
    bound.score.first = saturated::toInt(-contact);
    bound.index = -1; // in front of everything that scores the same
    m_queue.set(slot, m_free.order(slot), bound);
}

void PlacementRun::raiseBounds(const PackRect& placed) {
    for (int slot : m_free.touching()) {
        const qint64 gain = m_contact->gain(m_free.at(slot), placed);
        if (gain > 0)
            setBound(slot, m_bounds[static_cast<size_t>(slot)] + gain);
    }
}
