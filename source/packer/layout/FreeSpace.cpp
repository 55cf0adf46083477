#include "FreeSpace.h"

#include <algorithm>
#include <limits>

namespace {

bool overlaps(const PackRect& a, const PackRect& b) {
    return a.x < b.right() && a.right() > b.x && a.y < b.bottom() && a.bottom() > b.y;
}

} // namespace

void FreeSpace::init(int width, int height) {
    for (std::vector<int>* edges : {&m_left, &m_top, &m_right, &m_bottom})
        edges->clear();
    m_orders.clear();
    m_unusedSlots.clear();
    m_lastOrder = 0;
    add({0, 0, width, height, false});
}

PackRect FreeSpace::at(int slot) const {
    const auto i = static_cast<size_t>(slot);
    return {m_left[i], m_top[i], m_right[i] - m_left[i], m_bottom[i] - m_top[i], false};
}

int FreeSpace::add(const PackRect& rect) {
    if (m_unusedSlots.empty()) {
        m_unusedSlots.push_back(slotCount());
        for (std::vector<int>* edges : {&m_left, &m_top, &m_right, &m_bottom})
            edges->push_back(0);
        m_orders.push_back(0);
    }
    const int slot = m_unusedSlots.back();
    m_unusedSlots.pop_back();
    const auto i = static_cast<size_t>(slot);
    m_left[i] = rect.x;
    m_top[i] = rect.y;
    m_right[i] = rect.right();
    m_bottom[i] = rect.bottom();
    m_orders[i] = ++m_lastOrder;
    return slot;
}

void FreeSpace::drop(int slot) {
    const auto i = static_cast<size_t>(slot);
    // Near nothing, and holding nothing.
    m_left[i] = m_top[i] = std::numeric_limits<int>::max();
    m_right[i] = m_bottom[i] = std::numeric_limits<int>::min();
    m_orders[i] = 0;
    m_unusedSlots.push_back(slot);
}

void FreeSpace::take(const PackRect& used, QSize least) {
    findNear(used);
    sortOut(used);
    m_partCount = 0;
    for (std::vector<Part>& parts : m_parts)
        parts.clear();
    for (int slot : m_removed)
        split(at(slot), used, least);
    for (int slot : m_removed)
        drop(slot);
    m_maximalParts.clear();
    for (Side side : {Above, Below, Before, Behind})
        keepMaximal(side);
    std::sort(m_maximalParts.begin(), m_maximalParts.end(),
              [](const Part& a, const Part& b) { return a.number < b.number; });
    m_added.clear();
    for (const Part& part : m_maximalParts)
        m_added.push_back(add(part.rect));
}

/// Marks the slots whose rectangles overlap the given one or touch it, if only in a corner.
void FreeSpace::findNear(const PackRect& used) {
    const size_t count = m_orders.size();
    m_isNear.resize(count);
    const int left = used.x;
    const int top = used.y;
    const int right = used.right();
    const int bottom = used.bottom();
    // Without a branch, so that the compiler looks at several at a time.
    for (size_t i = 0; i < count; ++i) {
        m_isNear[i] = static_cast<unsigned char>(int{m_left[i] <= right} & int{m_right[i] >= left} &
                                                 int{m_top[i] <= bottom} & int{m_bottom[i] >= top});
    }
}

/// Tells those near rectangles that have to give way from those that touch.
void FreeSpace::sortOut(const PackRect& used) {
    m_removed.clear();
    m_touching.clear();
    for (std::vector<PackRect>& neighbours : m_neighbours)
        neighbours.clear();
    for (int slot = 0; slot < slotCount(); ++slot) {
        if (!m_isNear[static_cast<size_t>(slot)])
            continue;
        const PackRect free = at(slot);
        if (overlaps(free, used)) {
            m_removed.push_back(slot);
            continue;
        }
        m_touching.push_back(slot);
        const Side side = free.bottom() == used.y   ? Above
                          : free.y == used.bottom() ? Below
                          : free.right() == used.x  ? Before
                                                    : Behind;
        m_neighbours[side].push_back(free);
    }
    std::sort(m_removed.begin(), m_removed.end(), [this](int a, int b) { return order(a) < order(b); });
}

/// Collects the maximal parts of a free rectangle around a used one that overlaps it.
void FreeSpace::split(const PackRect& free, const PackRect& used, QSize least) {
    const auto collect = [&](Side side, int x, int y, int width, int height) {
        if (width >= least.width() && height >= least.height())
            m_parts[side].push_back({{x, y, width, height, false}, m_partCount++});
    };
    if (used.y > free.y)
        collect(Above, free.x, free.y, free.width, used.y - free.y);
    if (used.bottom() < free.bottom())
        collect(Below, free.x, used.bottom(), free.width, free.bottom() - used.bottom());
    if (used.x > free.x)
        collect(Before, free.x, free.y, used.x - free.x, free.height);
    if (used.right() < free.right())
        collect(Behind, used.right(), free.y, free.right() - used.right(), free.height);
}

/// Keeps the parts that lie in no other free rectangle; of equal ones the last. What holds a part shares its
/// edge along the used rectangle, and so is a part of the same side or an old rectangle that touches there.
/// The old ones need no look themselves: none lies in another, and so none lies in a part of another.
void FreeSpace::keepMaximal(Side side) {
    const std::vector<Part>& parts = m_parts[side];
    const std::vector<PackRect>& neighbours = m_neighbours[side];
    for (size_t i = 0; i < parts.size(); ++i) {
        const PackRect& rect = parts[i].rect;
        bool maximal = std::none_of(neighbours.begin(), neighbours.end(),
                                    [&](const PackRect& neighbour) { return rect.isWithin(neighbour); });
        for (size_t j = 0; maximal && j < parts.size(); ++j) {
            const PackRect& other = parts[j].rect;
            maximal = j == i || !rect.isWithin(other) || (j < i && other.isWithin(rect));
        }
        if (maximal)
            m_maximalParts.push_back(parts[i]);
    }
}

int FreeSpace::findHolder(int width, int height) const {
    for (size_t i = 0; i < m_orders.size(); ++i) {
        if (m_orders[i] != 0 && m_right[i] - m_left[i] >= width && m_bottom[i] - m_top[i] >= height)
            return static_cast<int>(i);
    }
    return -1;
}

std::vector<PackRect> FreeSpace::list() const {
    std::vector<int> slots;
    for (int slot = 0; slot < slotCount(); ++slot) {
        if (order(slot) != 0)
            slots.push_back(slot);
    }
    std::sort(slots.begin(), slots.end(), [this](int a, int b) { return order(a) < order(b); });
    std::vector<PackRect> rects;
    rects.reserve(slots.size());
    for (int slot : slots)
        rects.push_back(at(slot));
    return rects;
}
