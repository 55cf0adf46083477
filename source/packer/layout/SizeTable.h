#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

/// Ways to lay sizes down, sorted by one side into lines and within a line by the other side. Lengths in
/// pixels.
class SizeTable {
public:
    struct Way {
        int side;  ///< that of the line
        int other; ///< the other one
        int group; ///< a number of WaitingSizes
        bool turned;
    };

    struct Line {
        int side;
        size_t begin; ///< among the ways
        size_t end;
    };

    SizeTable() = default;
    explicit SizeTable(std::vector<Way> ways);

    /// By ascending sides. None is empty.
    const std::vector<Line>& lines() const { return m_lines; }

    /// Number of lines whose side is not above the limit.
    size_t linesUpTo(int limit) const;

    bool hasLine(int side) const;

    /// The smallest other side of a line.
    int shortest(const Line& line) const { return m_ways[line.begin].other; }

    /// Calls `visit` with those ways of a line whose other side is not above the limit, the longest first,
    /// until it returns false.
    template <typename Visit>
    void visitDownFrom(const Line& line, int limit, Visit visit) const {
        const auto begin = m_ways.begin() + static_cast<std::ptrdiff_t>(line.begin);
        const auto end = m_ways.begin() + static_cast<std::ptrdiff_t>(line.end);
        auto way = std::upper_bound(begin, end, limit,
                                    [](int length, const Way& other) { return length < other.other; });
        while (way != begin && visit(*--way)) {
        }
    }

    /// Takes out a way that is there.
    void remove(int side, int other, int group);

private:
    std::vector<Line> m_lines;
    std::vector<Way> m_ways;
};
