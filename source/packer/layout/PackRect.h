#pragma once

#include <algorithm>

/// A rectangle of a bin, in pixels. Of a placed one width and height are the size as it lies on the sheet:
/// the sprite's padded size, swapped if it is rotated.
struct PackRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool rotated = false;

    int right() const { return x + width; }
    int bottom() const { return y + height; }

    /// Equal rectangles contain each other.
    bool isWithin(const PackRect& other) const {
        return x >= other.x && y >= other.y && right() <= other.right() && bottom() <= other.bottom();
    }

    friend bool operator==(const PackRect&, const PackRect&) = default;
};

/// The length, in pixels, that two stretches of a line share.
inline int sharedLength(int low, int high, int otherLow, int otherHigh) {
    return std::max(0, std::min(high, otherHigh) - std::max(low, otherLow));
}
