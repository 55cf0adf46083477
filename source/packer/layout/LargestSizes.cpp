#include "LargestSizes.h"

LargestSizes::LargestSizes(const WaitingSizes& waiting) : m_waiting(waiting) {
    for (int group = 0; group < static_cast<int>(waiting.groups().size()); ++group)
        m_groups.push_back(group);
    std::sort(m_groups.begin(), m_groups.end(), [this](int a, int b) {
        return std::pair(size(a).width(), size(a).height()) > std::pair(size(b).width(), size(b).height());
    });
    m_largest = collect(0, m_groups.size(), -1);
}

/// Where sizes may be turned, all are compared lying on their longer side.
QSize LargestSizes::size(int group) const {
    const WaitingSizes::Group& waiting = m_waiting.groups()[static_cast<size_t>(group)];
    const QSize size(waiting.width, waiting.height);
    return m_waiting.allowRotation() && size.width() < size.height() ? size.transposed() : size;
}

/// Those of some groups that are higher than all wider ones.
std::vector<LargestSizes::Largest> LargestSizes::collect(size_t begin, size_t end, int higherThan) const {
    std::vector<Largest> found;
    for (size_t position = begin; position < end; ++position) {
        const int group = m_groups[position];
        if (m_waiting.index(group) < 0 || size(group).height() <= higherThan)
            continue;
        higherThan = size(group).height();
        found.push_back({position, 0, 0});
    }
    return found;
}

void LargestSizes::groupEnded(int group) {
    const auto ended = std::find_if(m_largest.begin(), m_largest.end(), [&](const Largest& largest) {
        return m_groups[largest.position] == group;
    });
    if (ended == m_largest.end())
        return;
    // It stood in front of those alone that come before the next one.
    const auto next = ended + 1;
    const size_t end = next == m_largest.end() ? m_groups.size() : next->position;
    const int higherThan = ended == m_largest.begin() ? -1 : size(m_groups[(ended - 1)->position]).height();
    const std::vector<Largest> found = collect(ended->position + 1, end, higherThan);
    m_largest.insert(m_largest.erase(ended), found.begin(), found.end());
}

bool LargestSizes::allFit(const FreeSpace& free) {
    return std::all_of(m_largest.begin(), m_largest.end(), [&](Largest& largest) {
        return (largest.order != 0 && free.order(largest.slot) == largest.order) || findHolder(largest, free);
    });
}

bool LargestSizes::findHolder(Largest& largest, const FreeSpace& free) const {
    const QSize needed = size(m_groups[largest.position]);
    largest.slot = free.findHolder(needed.width(), needed.height());
    if (largest.slot < 0 && m_waiting.allowRotation())
        largest.slot = free.findHolder(needed.height(), needed.width());
    if (largest.slot < 0)
        return false;
    largest.order = free.order(largest.slot);
    return true;
}
