#include "BestFit.h"

#include "SaturatedMath.h"

#include <algorithm>

namespace {

FitScore shortSideScore(const PackRect& free, int width, int height) {
    const auto [small, large] = std::minmax({free.width - width, free.height - height});
    return {small, large};
}

FitScore longSideScore(const PackRect& free, int width, int height) {
    const auto [small, large] = std::minmax({free.width - width, free.height - height});
    return {large, small};
}

FitScore areaScore(const PackRect& free, int width, int height) {
    const qint64 rest = qint64{free.width} * free.height - qint64{width} * height;
    return {saturated::toInt(rest), std::min(free.width - width, free.height - height)};
}

/// Considers the longest ways of a line that fit.
template <typename Rate>
void considerLongest(const SizeTable& table, const SizeTable::Line& line, int limit, Rate rate) {
    int longest = 0;
    table.visitDownFrom(line, limit, [&](const SizeTable::Way& way) {
        if (way.other < longest)
            return false;
        longest = way.other;
        rate(way);
        return true;
    });
}

} // namespace

Fit fitByShortSide(const WaitingSizes& waiting, const PackRect& free) {
    BestFit best(waiting);
    const SizeTable& widths = waiting.byWidth();
    const SizeTable& heights = waiting.byHeight();
    size_t column = widths.linesUpTo(free.width);
    size_t row = heights.linesUpTo(free.height);
    // The small rest is that of the width or that of the height: both tables, smallest rests first, until
    // none can be as small as the best.
    while (column > 0 || row > 0) {
        const int none = std::numeric_limits<int>::max();
        const int restX = column > 0 ? free.width - widths.lines()[column - 1].side : none;
        const int restY = row > 0 ? free.height - heights.lines()[row - 1].side : none;
        if (std::min(restX, restY) > best.score().first)
            break;
        if (restX <= restY) {
            considerLongest(widths, widths.lines()[--column], free.height, [&](const SizeTable::Way& way) {
                best.consider(shortSideScore(free, way.side, way.other), way.side, way.other, way);
            });
        } else {
            considerLongest(heights, heights.lines()[--row], free.width, [&](const SizeTable::Way& way) {
                best.consider(shortSideScore(free, way.other, way.side), way.other, way.side, way);
            });
        }
    }
    return best.fit();
}

Fit fitByLongSide(const WaitingSizes& waiting, const PackRect& free) {
    BestFit best(waiting);
    const SizeTable& widths = waiting.byWidth();
    for (size_t column = widths.linesUpTo(free.width); column-- > 0;) {
        const SizeTable::Line& line = widths.lines()[column];
        if (free.width - line.side > best.score().first)
            break;
        considerLongest(widths, line, free.height, [&](const SizeTable::Way& way) {
            best.consider(longSideScore(free, way.side, way.other), way.side, way.other, way);
        });
    }
    return best.fit();
}

Fit fitByArea(const WaitingSizes& waiting, const PackRect& free) {
    BestFit best(waiting);
    const SizeTable& widths = waiting.byWidth();
    const SizeTable& heights = waiting.byHeight();
    const size_t rows = heights.linesUpTo(free.height);
    if (rows == 0)
        return best.fit();
    const int highest = heights.lines()[rows - 1].side;
    for (size_t column = widths.linesUpTo(free.width); column-- > 0;) {
        const SizeTable::Line& line = widths.lines()[column];
        if (areaScore(free, line.side, highest).first > best.score().first)
            break;
        widths.visitDownFrom(line, free.height, [&](const SizeTable::Way& way) {
            const FitScore score = areaScore(free, way.side, way.other);
            best.consider(score, way.side, way.other, way);
            // Of areas that are too large to tell apart a shorter side may be the better one.
            return score.first <= best.score().first;
        });
    }
    return best.fit();
}

Fit fitByBottomLeft(const WaitingSizes& waiting, const PackRect& free) {
    BestFit best(waiting);
    const SizeTable& heights = waiting.byHeight();
    const size_t rows = heights.linesUpTo(free.height);
    for (size_t row = 0; row < rows && best.fit().group < 0; ++row) {
        const SizeTable::Line& line = heights.lines()[row];
        if (heights.shortest(line) > free.width)
            continue;
        heights.visitDownFrom(line, free.width, [&](const SizeTable::Way& way) {
            best.consider({free.y + way.side, free.x}, way.other, way.side, way);
            return true;
        });
    }
    return best.fit();
}
