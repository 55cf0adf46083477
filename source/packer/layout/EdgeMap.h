#pragma once

#include <cstddef>
#include <vector>

/// Stretches of lines that the edges of placed rectangles cover, by the coordinate of the line. Edges that
/// adjoin are one stretch. All measures in pixels.
class EdgeMap {
public:
    struct Stretch {
        int line;
        int low;
        int high;
    };

    EdgeMap();

    void clear();

    /// An edge from `low` to `high` along the line at `line`. It overlaps none that is there.
    void insert(int line, int low, int high);

    /// Calls `visit(low, high)` with the stretches of a line that reach into the interval, in ascending order
    /// and cut to it.
    template <typename Visit>
    void visit(int line, int low, int high, Visit visit) const {
        const std::vector<Stretch>& stretches = m_slots[slot(line)];
        for (size_t i = firstBehind(stretches, line, low);
             i < stretches.size() && stretches[i].line == line && stretches[i].low < high; ++i)
            visit(stretches[i].low < low ? low : stretches[i].low,
                  stretches[i].high > high ? high : stretches[i].high);
    }

private:
    static size_t slot(int line);
    static size_t firstBehind(const std::vector<Stretch>& stretches, int line, int position);

    std::vector<std::vector<Stretch>> m_slots; ///< each by ascending line and position
};
