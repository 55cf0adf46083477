#include "WaitingSizes.h"

#include <tuple>

namespace {

bool canHavePlace(QSize size) {
    return size.width() >= 0 && size.height() >= 0 && (size.width() > 0 || size.height() > 0);
}

} // namespace

WaitingSizes::WaitingSizes(const std::vector<QSize>& sizes, bool allowRotation)
    : m_allowRotation(allowRotation) {
    for (size_t i = 0; i < sizes.size(); ++i) {
        if (canHavePlace(sizes[i]))
            m_indices.push_back(static_cast<int>(i));
    }
    m_count = m_indices.size();
    m_placelessCount = sizes.size() - m_count;
    sortIntoGroups(sizes);
    makeTables();
}

void WaitingSizes::sortIntoGroups(const std::vector<QSize>& sizes) {
    const auto key = [&sizes](int index) {
        const QSize size = sizes[static_cast<size_t>(index)];
        return std::tuple(size.width(), size.height(), index);
    };
    std::sort(m_indices.begin(), m_indices.end(), [&](int a, int b) { return key(a) < key(b); });
    for (size_t i = 0; i < m_indices.size(); ++i) {
        const auto [width, height, index] = key(m_indices[i]);
        if (m_groups.empty() || m_groups.back().width != width || m_groups.back().height != height)
            m_groups.push_back({width, height, i, i});
        ++m_groups.back().end;
        m_hasFlat |= width == 0 || height == 0;
    }
}

void WaitingSizes::makeTables() {
    std::vector<SizeTable::Way> byWidth;
    std::vector<SizeTable::Way> byHeight;
    for (int number = 0; number < static_cast<int>(m_groups.size()); ++number) {
        const auto [width, height, next, end] = m_groups[static_cast<size_t>(number)];
        byWidth.push_back({width, height, number, false});
        byHeight.push_back({height, width, number, false});
        // A square is never turned: it scores the same as it stands, which is tried first.
        if (m_allowRotation && width != height) {
            byWidth.push_back({height, width, number, true});
            byHeight.push_back({width, height, number, true});
        }
    }
    m_byWidth = SizeTable(std::move(byWidth));
    m_byHeight = SizeTable(std::move(byHeight));
}

int WaitingSizes::index(int group) const {
    const Group& waiting = m_groups[static_cast<size_t>(group)];
    return waiting.isEmpty() ? -1 : m_indices[waiting.next];
}

bool WaitingSizes::takeFrom(int group) {
    Group& waiting = m_groups[static_cast<size_t>(group)];
    --m_count;
    ++waiting.next;
    if (!waiting.isEmpty())
        return false;
    m_byWidth.remove(waiting.width, waiting.height, group);
    m_byHeight.remove(waiting.height, waiting.width, group);
    if (m_allowRotation && waiting.width != waiting.height) {
        m_byWidth.remove(waiting.height, waiting.width, group);
        m_byHeight.remove(waiting.width, waiting.height, group);
    }
    return true;
}

QSize WaitingSizes::least() const {
    if (m_byWidth.lines().empty())
        return {0, 0};
    return {m_byWidth.lines().front().side, m_byHeight.lines().front().side};
}
