#pragma once

#include <vector>

/// Edges of placed rectangles by the coordinate of the line that they lie on: a flat hash table for one quick
/// question, how much of an interval touches them.
class EdgeMap {
public:
    EdgeMap();

    void clear();

    /// An edge from `low` to `high` along the line at `line`, in pixels.
    void insert(int line, int low, int high);

    /// Sum of the overlaps of the interval with all edges on the line, in pixels.
    int contact(int line, int low, int high) const;

private:
    struct Edge {
        int line;
        int low;
        int high;
        int next; ///< the edge entered before in the same slot, or -1
    };

    static unsigned slot(int line);

    std::vector<int> m_slots; ///< the edge entered last, or -1
    std::vector<Edge> m_edges;
};
