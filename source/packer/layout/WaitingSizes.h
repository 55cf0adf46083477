#pragma once

#include "SizeTable.h"

#include <QSize>

/// The sizes that wait for a place in a bin. Equal ones are a group: they all score the same, and of equal
/// scores the earliest in the list of sizes is placed first.
class WaitingSizes {
public:
    struct Group {
        int width;
        int height;
        size_t next; ///< the earliest that waits, among the indices
        size_t end;

        bool isEmpty() const { return next == end; }
    };

    WaitingSizes(const std::vector<QSize>& sizes, bool allowRotation);

    /// Number of sizes that wait. Those without any extent, or with a side below 0, never get a place and
    /// aren't counted.
    size_t count() const { return m_count; }

    /// Number of sizes that never get a place.
    size_t placelessCount() const { return m_placelessCount; }

    /// Whether there are sizes with one side of 0. They can be placed, but take no room.
    bool hasFlat() const { return m_hasFlat; }

    bool allowRotation() const { return m_allowRotation; }

    const std::vector<Group>& groups() const { return m_groups; }

    /// Where the group's earliest waiting size stands in the list of sizes; -1 if none waits.
    int index(int group) const;

    /// Takes the earliest waiting size of a group off the list. True if it was the last one.
    bool takeFrom(int group);

    /// All ways to lay down the sizes that wait: as they stand and, if that is allowed, turned.
    const SizeTable& byWidth() const { return m_byWidth; }
    const SizeTable& byHeight() const { return m_byHeight; }

    /// No size that waits is narrower or lower than that, whichever way it lies.
    QSize least() const;

private:
    void sortIntoGroups(const std::vector<QSize>& sizes);
    void makeTables();

    bool m_allowRotation;
    bool m_hasFlat = false;
    size_t m_count = 0;
    size_t m_placelessCount = 0;
    std::vector<Group> m_groups;
    std::vector<int> m_indices; ///< in the list of sizes, group after group
    SizeTable m_byWidth;
    SizeTable m_byHeight;
};
