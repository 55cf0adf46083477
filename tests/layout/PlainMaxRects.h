#pragma once

#include "PackRect.h"

#include <QSize>

#include <unordered_map>
#include <vector>

/// The maximal rectangles method in its simplest loops, with nothing remembered between two looks: the
/// yardstick for every faster way.
class PlainMaxRects {
public:
    /// Where a contact score looks: at every placed rectangle, or at those with an edge on the same line.
    enum class Contact { AllPlaced, EdgeMaps };

    PlainMaxRects(QSize bin, bool allowRotation, Contact contact = Contact::AllPlaced);

    /// Places the sizes, globally best first; heuristics are numbered 1 to 5.
    std::vector<PackRect> insert(std::vector<QSize> sizes, int heuristic);

    const std::vector<PackRect>& freeRectangles() const { return m_free; }

private:
    struct Found {
        PackRect rect;
        int score1 = 2147483647;
        int score2 = 2147483647;
    };

    Found score(QSize size, int heuristic) const;
    void rate(Found& best, const PackRect& free, QSize size, bool rotated, int heuristic) const;
    int contact(const PackRect& rect) const;
    int contactWithAll(const PackRect& rect) const;
    int contactByEdges(const PackRect& rect) const;
    void place(const PackRect& rect);
    bool split(PackRect free, const PackRect& used);
    void prune();

    struct Edge {
        int low;
        int high;
    };
    using EdgesByLine = std::unordered_map<int, std::vector<Edge>>;

    QSize m_bin;
    bool m_allowRotation;
    Contact m_contact;
    std::vector<PackRect> m_free;
    std::vector<PackRect> m_used;
    EdgesByLine m_leftEdges;
    EdgesByLine m_rightEdges;
    EdgesByLine m_topEdges;
    EdgesByLine m_bottomEdges;
};
