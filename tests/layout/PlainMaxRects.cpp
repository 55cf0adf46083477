#include "PlainMaxRects.h"

#include <algorithm>
#include <cstdlib>

namespace {

int overlap(int a, int b, int c, int d) {
    if (b < c || d < a)
        return 0;
    return std::min(b, d) - std::max(a, c);
}

bool contained(const PackRect& a, const PackRect& b) {
    return a.x >= b.x && a.y >= b.y && a.x + a.width <= b.x + b.width && a.y + a.height <= b.y + b.height;
}

} // namespace

PlainMaxRects::PlainMaxRects(QSize bin, bool allowRotation, Contact contact)
    : m_bin(bin), m_allowRotation(allowRotation),
      m_contact(contact), m_free{{0, 0, bin.width(), bin.height(), false}} {}

std::vector<PackRect> PlainMaxRects::insert(std::vector<QSize> sizes, int heuristic) {
    std::vector<PackRect> placed;
    while (!sizes.empty()) {
        Found best;
        int bestIndex = -1;
        for (size_t i = 0; i < sizes.size(); ++i) {
            const Found found = score(sizes[i], heuristic);
            if (found.score1 < best.score1 || (found.score1 == best.score1 && found.score2 < best.score2)) {
                best = found;
                bestIndex = static_cast<int>(i);
            }
        }
        if (bestIndex == -1)
            break;
        place(best.rect);
        placed.push_back(best.rect);
        sizes.erase(sizes.begin() + bestIndex);
    }
    return placed;
}

PlainMaxRects::Found PlainMaxRects::score(QSize size, int heuristic) const {
    Found best;
    for (const PackRect& free : m_free) {
        rate(best, free, size, false, heuristic);
        if (m_allowRotation)
            rate(best, free, size.transposed(), true, heuristic);
    }
    if (best.rect.height == 0) {
        best.score1 = 2147483647;
        best.score2 = 2147483647;
    }
    return best;
}

void PlainMaxRects::rate(Found& best, const PackRect& free, QSize size, bool rotated, int heuristic) const {
    const int w = size.width();
    const int h = size.height();
    if (w > free.width || h > free.height)
        return;
    const PackRect candidate{free.x, free.y, w, h, rotated};
    const int horizontal = std::abs(free.width - w);
    const int vertical = std::abs(free.height - h);
    int score1 = 0;
    int score2 = 2147483647;
    switch (heuristic) {
    case 1:
        score1 = std::min(horizontal, vertical);
        score2 = std::max(horizontal, vertical);
        break;
    case 2:
        score1 = std::max(horizontal, vertical);
        score2 = std::min(horizontal, vertical);
        break;
    case 3:
        score1 = static_cast<int>(std::min<long long>(
            2147483647, static_cast<long long>(free.width) * free.height - static_cast<long long>(w) * h));
        score2 = std::min(horizontal, vertical);
        break;
    case 4:
        score1 = free.y + h;
        score2 = free.x;
        break;
    default:
        score1 = -contact(candidate);
        break;
    }
    if (score1 < best.score1 || (score1 == best.score1 && score2 < best.score2))
        best = {candidate, score1, score2};
}

int PlainMaxRects::contact(const PackRect& r) const {
    int score = 0;
    if (r.x == 0 || r.x + r.width == m_bin.width())
        score += r.height;
    if (r.y == 0 || r.y + r.height == m_bin.height())
        score += r.width;
    return score + (m_contact == Contact::EdgeMaps ? contactByEdges(r) : contactWithAll(r));
}

int PlainMaxRects::contactWithAll(const PackRect& r) const {
    int score = 0;
    for (const PackRect& used : m_used) {
        if (used.x == r.x + r.width)
            score += overlap(r.y, r.y + r.height, used.y, used.y + used.height);
        if (used.x + used.width == r.x)
            score += overlap(r.y, r.y + r.height, used.y, used.y + used.height);
        if (used.y == r.y + r.height)
            score += overlap(r.x, r.x + r.width, used.x, used.x + used.width);
        if (used.y + used.height == r.y)
            score += overlap(r.x, r.x + r.width, used.x, used.x + used.width);
    }
    return score;
}

int PlainMaxRects::contactByEdges(const PackRect& r) const {
    const auto touching = [](const EdgesByLine& edges, int line, int low, int high) {
        int score = 0;
        const auto found = edges.find(line);
        if (found != edges.end()) {
            for (const Edge& edge : found->second)
                score += overlap(low, high, edge.low, edge.high);
        }
        return score;
    };
    return touching(m_leftEdges, r.x + r.width, r.y, r.y + r.height) +
           touching(m_rightEdges, r.x, r.y, r.y + r.height) +
           touching(m_topEdges, r.y + r.height, r.x, r.x + r.width) +
           touching(m_bottomEdges, r.y, r.x, r.x + r.width);
}

void PlainMaxRects::place(const PackRect& rect) {
    size_t toProcess = m_free.size();
    for (size_t i = 0; i < toProcess;) {
        if (split(m_free[i], rect)) {
            m_free.erase(m_free.begin() + static_cast<std::ptrdiff_t>(i));
            --toProcess;
        } else {
            ++i;
        }
    }
    prune();
    m_used.push_back(rect);
    m_leftEdges[rect.x].push_back({rect.y, rect.y + rect.height});
    m_rightEdges[rect.x + rect.width].push_back({rect.y, rect.y + rect.height});
    m_topEdges[rect.y].push_back({rect.x, rect.x + rect.width});
    m_bottomEdges[rect.y + rect.height].push_back({rect.x, rect.x + rect.width});
}

bool PlainMaxRects::split(PackRect f, const PackRect& u) {
    if (u.x >= f.x + f.width || u.x + u.width <= f.x || u.y >= f.y + f.height || u.y + u.height <= f.y)
        return false;
    if (u.y > f.y)
        m_free.push_back({f.x, f.y, f.width, u.y - f.y, false});
    if (u.y + u.height < f.y + f.height)
        m_free.push_back({f.x, u.y + u.height, f.width, f.y + f.height - (u.y + u.height), false});
    if (u.x > f.x)
        m_free.push_back({f.x, f.y, u.x - f.x, f.height, false});
    if (u.x + u.width < f.x + f.width)
        m_free.push_back({u.x + u.width, f.y, f.x + f.width - (u.x + u.width), f.height, false});
    return true;
}

void PlainMaxRects::prune() {
    for (size_t i = 0; i < m_free.size();) {
        bool erased = false;
        for (size_t j = i + 1; j < m_free.size();) {
            if (contained(m_free[i], m_free[j])) {
                m_free.erase(m_free.begin() + static_cast<std::ptrdiff_t>(i));
                erased = true;
                break;
            }
            if (contained(m_free[j], m_free[i]))
                m_free.erase(m_free.begin() + static_cast<std::ptrdiff_t>(j));
            else
                ++j;
        }
        if (!erased)
            ++i;
    }
}
