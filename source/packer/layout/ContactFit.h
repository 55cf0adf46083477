#pragma once

#include "BestFit.h"
#include "EdgeMap.h"

/// How much of a side of a free rectangle is in contact with placed rectangles or the bin's border, as a
/// function of the length of the side that counts, from its left or upper end. It never falls.
class ContactProfile {
public:
    void clear() { m_stretches.clear(); }
    void add(int from, int to);

    /// Contact of the first `length` pixels.
    qint64 upTo(int length) const;

    /// Contact of the whole side.
    qint64 whole() const {
        return m_stretches.empty() ? 0 : m_stretches.back().before + m_stretches.back().length();
    }

private:
    struct Stretch {
        int from;
        int to;
        qint64 before; ///< contact of all stretches in front

        qint64 length() const { return qint64{to} - from; }
    };

    std::vector<Stretch> m_stretches;
};

/// Finds the waiting size that touches most, in pixels of its outline, in the upper left corner of a free
/// rectangle. Nothing placed reaches into a free rectangle: a size touches something on its right only if it
/// is as wide as the rectangle, and below only if it is as high.
class ContactFit {
public:
    ContactFit(QSize bin, const WaitingSizes& waiting);

    void addPlaced(const PackRect& rect);

    /// The best fit. Scores are -contact, which is never below -2147483648.
    Fit find(const PackRect& free);

    /// No waiting size has more contact than that.
    qint64 bound(const PackRect& free);

    /// By how much the contact of a waiting size within the free rectangle can have grown with a placed one
    /// that touches it from outside.
    qint64 gain(const PackRect& free, const PackRect& placed) const;

private:
    void measure(const PackRect& free);
    int longestWidth(const PackRect& free) const;
    int longestHeight(const PackRect& free) const;

    QSize m_bin;
    const WaitingSizes& m_waiting;
    EdgeMap m_leftEdges;
    EdgeMap m_rightEdges;
    EdgeMap m_topEdges;
    EdgeMap m_bottomEdges;

    // Of the free rectangle that is looked at.
    ContactProfile m_left;
    ContactProfile m_top;
    ContactProfile m_right;  ///< empty if no size is as wide
    ContactProfile m_bottom; ///< empty if no size is as high
};
