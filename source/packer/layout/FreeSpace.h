#pragma once

#include "PackRect.h"

#include <QSize>
#include <QtGlobal>

#include <array>
#include <vector>

/// The free space of a bin as a list of overlapping maximal free rectangles. They lie in slots, so that a
/// rectangle can be named while others come and go; a slot is used again. Positions and sides in pixels.
class FreeSpace {
public:
    /// Empties the list but for one rectangle of the given size, in slot 0.
    void init(int width, int height);

    /// Takes a rectangle out of the free space. Every free rectangle that it overlaps gives way to its
    /// maximal parts, of which those are left out that are smaller than `least` in one direction.
    void take(const PackRect& used, QSize least);

    /// Takes a free rectangle out of the list. For one that can hold nothing any more: what lies within it
    /// can't either.
    void drop(int slot);

    /// Slots of the last take(): those that were given up, those of new rectangles, which may be the same,
    /// and those of old ones that touch the taken rectangle.
    const std::vector<int>& removed() const { return m_removed; }
    const std::vector<int>& added() const { return m_added; }
    const std::vector<int>& touching() const { return m_touching; }

    PackRect at(int slot) const;

    /// Grows along the list: which of two rectangles stands in front. 0 for a slot that is not in use.
    quint32 order(int slot) const { return m_orders[static_cast<size_t>(slot)]; }

    /// Slots are numbers below this one.
    int slotCount() const { return static_cast<int>(m_orders.size()); }

    /// A slot whose rectangle holds the size as it stands, or -1.
    int findHolder(int width, int height) const;

    /// All free rectangles, in the order of the list.
    std::vector<PackRect> list() const;

private:
    enum Side { Above, Below, Before, Behind, SideCount };

    /// What is left of a free rectangle on one side of a taken one.
    struct Part {
        PackRect rect;
        int number; ///< in the order of the splits
    };

    void findNear(const PackRect& used);
    void sortOut(const PackRect& used);
    void split(const PackRect& free, const PackRect& used, QSize least);
    void keepMaximal(Side side);
    int add(const PackRect& rect);

    // Edges by slot, in lists of their own that a look for neighbours runs through.
    std::vector<int> m_left;
    std::vector<int> m_top;
    std::vector<int> m_right;
    std::vector<int> m_bottom;
    std::vector<quint32> m_orders;
    std::vector<int> m_unusedSlots;
    quint32 m_lastOrder = 0;

    // Of the last take().
    std::vector<unsigned char> m_isNear;
    std::vector<int> m_removed;
    std::vector<int> m_touching;
    std::vector<int> m_added;
    std::array<std::vector<PackRect>, SideCount> m_neighbours; ///< rectangles that touch along a side
    std::array<std::vector<Part>, SideCount> m_parts;
    std::vector<Part> m_maximalParts;
    int m_partCount = 0;
};
