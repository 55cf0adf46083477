#include "EdgeMap.h"

#include <algorithm>

namespace {

// Enough that the lines of a large sheet rarely share a slot, and little to clear before each attempt.
constexpr unsigned slotCount = 1024;

} // namespace

EdgeMap::EdgeMap() : m_slots(slotCount) {}

void EdgeMap::clear() {
    for (std::vector<Stretch>& stretches : m_slots)
        stretches.clear();
}

size_t EdgeMap::slot(int line) { return static_cast<unsigned>(line) % slotCount; }

/// The first stretch of the line that ends behind the position, or where it would stand.
size_t EdgeMap::firstBehind(const std::vector<Stretch>& stretches, int line, int position) {
    const auto found = std::partition_point(stretches.begin(), stretches.end(), [=](const Stretch& stretch) {
        return stretch.line < line || (stretch.line == line && stretch.high <= position);
    });
    return static_cast<size_t>(found - stretches.begin());
}

void EdgeMap::insert(int line, int low, int high) {
    std::vector<Stretch>& stretches = m_slots[slot(line)];
    const size_t next = firstBehind(stretches, line, low);
    const bool joinsNext =
        next < stretches.size() && stretches[next].line == line && stretches[next].low == high;
    const bool joinsPrevious =
        next > 0 && stretches[next - 1].line == line && stretches[next - 1].high == low;
    const auto position = stretches.begin() + static_cast<std::ptrdiff_t>(next);
    if (joinsNext && joinsPrevious) {
        stretches[next - 1].high = stretches[next].high;
        stretches.erase(position);
    } else if (joinsPrevious) {
        stretches[next - 1].high = high;
    } else if (joinsNext) {
        stretches[next].low = low;
    } else {
        stretches.insert(position, {line, low, high});
    }
}
