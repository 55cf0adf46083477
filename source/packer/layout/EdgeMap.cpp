#include "EdgeMap.h"

#include <algorithm>

namespace {

// Enough that the lines of a large sheet rarely share a slot, and little to clear before each attempt.
constexpr unsigned slotCount = 4096;

} // namespace

EdgeMap::EdgeMap() : m_slots(slotCount, -1) {}

void EdgeMap::clear() {
    std::fill(m_slots.begin(), m_slots.end(), -1);
    m_edges.clear();
}

unsigned EdgeMap::slot(int line) { return static_cast<unsigned>(line) % slotCount; }

void EdgeMap::insert(int line, int low, int high) {
    int& head = m_slots[slot(line)];
    m_edges.push_back({line, low, high, head});
    head = static_cast<int>(m_edges.size()) - 1;
}

int EdgeMap::contact(int line, int low, int high) const {
    int sum = 0;
    for (int i = m_slots[slot(line)]; i >= 0; i = m_edges[static_cast<size_t>(i)].next) {
        const Edge& edge = m_edges[static_cast<size_t>(i)];
        if (edge.line == line)
            sum += std::max(0, std::min(high, edge.high) - std::max(low, edge.low));
    }
    return sum;
}
