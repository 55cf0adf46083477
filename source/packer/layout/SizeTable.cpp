#include "SizeTable.h"

#include <tuple>

SizeTable::SizeTable(std::vector<Way> ways) : m_ways(std::move(ways)) {
    std::sort(m_ways.begin(), m_ways.end(), [](const Way& a, const Way& b) {
        return std::tie(a.side, a.other, a.group) < std::tie(b.side, b.other, b.group);
    });
    for (size_t i = 0; i < m_ways.size(); ++i) {
        if (m_lines.empty() || m_lines.back().side != m_ways[i].side)
            m_lines.push_back({m_ways[i].side, i, i});
        ++m_lines.back().end;
    }
}

size_t SizeTable::linesUpTo(int limit) const {
    const auto above = std::upper_bound(m_lines.begin(), m_lines.end(), limit,
                                        [](int side, const Line& line) { return side < line.side; });
    return static_cast<size_t>(above - m_lines.begin());
}

bool SizeTable::hasLine(int side) const {
    const size_t count = linesUpTo(side);
    return count > 0 && m_lines[count - 1].side == side;
}

void SizeTable::remove(int side, int other, int group) {
    const auto line = m_lines.begin() + static_cast<std::ptrdiff_t>(linesUpTo(side)) - 1;
    const auto begin = m_ways.begin() + static_cast<std::ptrdiff_t>(line->begin);
    const auto end = m_ways.begin() + static_cast<std::ptrdiff_t>(line->end);
    const auto way = std::find_if(begin, end, [&](const Way& candidate) {
        return candidate.other == other && candidate.group == group;
    });
    std::move(way + 1, end, way);
    if (--line->end == line->begin)
        m_lines.erase(line);
}
