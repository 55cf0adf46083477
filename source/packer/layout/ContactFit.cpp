#include "ContactFit.h"

#include "SaturatedMath.h"

#include <algorithm>

void ContactProfile::add(int from, int to) { m_stretches.push_back({from, to, whole()}); }

qint64 ContactProfile::upTo(int length) const {
    qint64 contact = 0;
    for (const Stretch& stretch : m_stretches) {
        if (stretch.from >= length)
            break;
        contact = stretch.before + std::min(stretch.to, length) - stretch.from;
    }
    return contact;
}

ContactFit::ContactFit(QSize bin, const WaitingSizes& waiting) : m_bin(bin), m_waiting(waiting) {}

void ContactFit::addPlaced(const PackRect& rect) {
    m_leftEdges.insert(rect.x, rect.y, rect.bottom());
    m_rightEdges.insert(rect.right(), rect.y, rect.bottom());
    m_topEdges.insert(rect.y, rect.x, rect.right());
    m_bottomEdges.insert(rect.bottom(), rect.x, rect.right());
}

int ContactFit::longestWidth(const PackRect& free) const {
    const auto& lines = m_waiting.byWidth().lines();
    return lines.empty() ? 0 : std::min(lines.back().side, free.width);
}

int ContactFit::longestHeight(const PackRect& free) const {
    const auto& lines = m_waiting.byHeight().lines();
    return lines.empty() ? 0 : std::min(lines.back().side, free.height);
}

void ContactFit::measure(const PackRect& free) {
    for (ContactProfile* profile : {&m_left, &m_top, &m_right, &m_bottom})
        profile->clear();
    const int width = longestWidth(free);
    const int height = longestHeight(free);
    const auto measureSide = [](ContactProfile& profile, const EdgeMap& edges, int line, int start,
                                int length) {
        edges.visit(line, start, start + length,
                    [&](int low, int high) { profile.add(low - start, high - start); });
    };
    if (free.x == 0)
        m_left.add(0, height);
    else
        measureSide(m_left, m_rightEdges, free.x, free.y, height);
    if (free.y == 0)
        m_top.add(0, width);
    else
        measureSide(m_top, m_bottomEdges, free.y, free.x, width);
    // The border counts once even for a size that reaches from one side of the bin to the other.
    if (m_waiting.byWidth().hasLine(free.width)) {
        if (free.right() != m_bin.width())
            measureSide(m_right, m_leftEdges, free.right(), free.y, height);
        else if (free.x != 0)
            m_right.add(0, height);
    }
    if (m_waiting.byHeight().hasLine(free.height)) {
        if (free.bottom() != m_bin.height())
            measureSide(m_bottom, m_topEdges, free.bottom(), free.x, width);
        else if (free.y != 0)
            m_bottom.add(0, width);
    }
}

qint64 ContactFit::bound(const PackRect& free) {
    measure(free);
    return m_left.whole() + m_top.whole() + m_right.whole() + m_bottom.whole();
}

Fit ContactFit::find(const PackRect& free) {
    measure(free);
    BestFit best(m_waiting);
    const SizeTable& widths = m_waiting.byWidth();
    for (size_t column = widths.linesUpTo(free.width); column-- > 0;) {
        const SizeTable::Line& line = widths.lines()[column];
        const bool fillsWidth = line.side == free.width;
        const qint64 top = m_top.upTo(line.side);
        const qint64 bottom = m_bottom.upTo(line.side);
        const qint64 most = top + bottom + m_left.whole() + (fillsWidth ? m_right.whole() : 0);
        if (saturated::toInt(-most) > best.score().first)
            break;
        widths.visitDownFrom(line, free.height, [&](const SizeTable::Way& way) {
            const qint64 contact = top + m_left.upTo(way.other) + (fillsWidth ? m_right.upTo(way.other) : 0) +
                                   (way.other == free.height ? bottom : 0);
            const FitScore score{saturated::toInt(-contact), std::numeric_limits<int>::max()};
            best.consider(score, way.side, way.other, way);
            return score <= best.score();
        });
    }
    return best.fit();
}

qint64 ContactFit::gain(const PackRect& free, const PackRect& placed) const {
    const bool beside =
        placed.right() == free.x || (placed.x == free.right() && m_waiting.byWidth().hasLine(free.width));
    if (beside)
        return sharedLength(free.y, free.y + longestHeight(free), placed.y, placed.bottom());
    const bool aboveOrBelow =
        placed.bottom() == free.y || (placed.y == free.bottom() && m_waiting.byHeight().hasLine(free.height));
    if (aboveOrBelow)
        return sharedLength(free.x, free.x + longestWidth(free), placed.x, placed.right());
    return 0;
}
