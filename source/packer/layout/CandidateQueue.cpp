#include "CandidateQueue.h"

#include <algorithm>

namespace {

bool isWorse(const CandidateQueue::Candidate& a, const CandidateQueue::Candidate& b) {
    if (a.fit.score != b.fit.score)
        return a.fit.score > b.fit.score;
    if (a.fit.index != b.fit.index)
        return a.fit.index > b.fit.index;
    return a.order > b.order;
}

} // namespace

quint32& CandidateQueue::stamp(int slot) {
    const auto i = static_cast<size_t>(slot);
    if (i >= m_stamps.size())
        m_stamps.resize(i + 1, 0);
    return m_stamps[i];
}

bool CandidateQueue::isOutdated(const Candidate& candidate) const {
    return m_stamps[static_cast<size_t>(candidate.slot)] != candidate.stamp;
}

void CandidateQueue::set(int slot, quint32 order, const Fit& fit) {
    remove(slot);
    ++m_count;
    stamp(slot) = ++m_lastStamp;
    m_heap.push_back({fit, order, slot, m_lastStamp});
    std::push_heap(m_heap.begin(), m_heap.end(), isWorse);
    sweep();
}

void CandidateQueue::remove(int slot) {
    if (stamp(slot) == 0)
        return;
    stamp(slot) = 0;
    --m_count;
}

const CandidateQueue::Candidate* CandidateQueue::best() {
    while (!m_heap.empty() && isOutdated(m_heap.front())) {
        std::pop_heap(m_heap.begin(), m_heap.end(), isWorse);
        m_heap.pop_back();
    }
    return m_heap.empty() ? nullptr : &m_heap.front();
}

/// Keeps the outdated candidates from outnumbering the others by far.
void CandidateQueue::sweep() {
    constexpr size_t few = 64;
    if (m_heap.size() < few + 4 * m_count)
        return;
    m_heap.erase(std::remove_if(m_heap.begin(), m_heap.end(),
                                [this](const Candidate& candidate) { return isOutdated(candidate); }),
                 m_heap.end());
    std::make_heap(m_heap.begin(), m_heap.end(), isWorse);
}
