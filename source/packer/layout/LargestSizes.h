#pragma once

#include "FreeSpace.h"
#include "WaitingSizes.h"

/// Tells whether every size that waits still fits somewhere. Free space never grows: what fits nowhere once
/// never will. Looks only at the largest sizes, those that are smaller in no direction than another one.
class LargestSizes {
public:
    explicit LargestSizes(const WaitingSizes& waiting);

    /// To be called when a group has become empty.
    void groupEnded(int group);

    /// Whether each of them fits into one of the free rectangles, all others left aside.
    bool allFit(const FreeSpace& free);

private:
    struct Largest {
        size_t position; ///< in m_groups
        int slot;        ///< of a free rectangle that holds it
        quint32 order;   ///< that rectangle's, 0 for none: the slot may be another one's by now
    };

    QSize size(int group) const;
    std::vector<Largest> collect(size_t begin, size_t end, int higherThan) const;
    bool findHolder(Largest& largest, const FreeSpace& free) const;

    const WaitingSizes& m_waiting;
    std::vector<int> m_groups;      ///< by falling width and height
    std::vector<Largest> m_largest; ///< by falling width and growing height
};
