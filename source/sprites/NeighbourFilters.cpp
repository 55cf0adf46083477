#include "NeighbourFilters.h"

#include "NewImage.h"

#include <algorithm>
#include <array>

namespace {

/// A pixel and its eight neighbours in reading order; e is the pixel itself.
struct Neighbours {
    QRgb a, b, c;
    QRgb d, e, f;
    QRgb g, h, i;
};

const QRgb* row(const QImage& image, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(std::clamp(y, 0, image.height() - 1)));
}

/// Runs `filter` over all pixels. It gets the neighbours and the place of its block: one pointer to the first
/// pixel of each of the block's rows.
template <int factor, class Filter>
QImage enlarge(const QImage& image, Filter filter) {
    if (image.isNull())
        return {};
    QImage result = newImage(qint64{image.width()} * factor, qint64{image.height()} * factor, image.format());
    const int last = image.width() - 1;
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* above = row(image, y - 1);
        const QRgb* here = row(image, y);
        const QRgb* below = row(image, y + 1);
        std::array<QRgb*, factor> block;
        for (int line = 0; line < factor; ++line)
            block[line] = reinterpret_cast<QRgb*>(result.scanLine(y * factor + line));
        for (int x = 0; x <= last; ++x) {
            const int left = std::max(x - 1, 0);
            const int right = std::min(x + 1, last);
            filter(Neighbours{above[left], above[x], above[right], here[left], here[x], here[right],
                              below[left], below[x], below[right]},
                   block);
            for (QRgb*& line : block)
                line += factor;
        }
    }
    return result;
}

} // namespace

QImage scale2x(const QImage& image) {
    return enlarge<2>(image, [](const Neighbours& n, const std::array<QRgb*, 2>& block) {
        const bool edge = n.b != n.h && n.d != n.f;
        block[0][0] = edge && n.d == n.b ? n.d : n.e;
        block[0][1] = edge && n.b == n.f ? n.f : n.e;
        block[1][0] = edge && n.d == n.h ? n.d : n.e;
        block[1][1] = edge && n.h == n.f ? n.f : n.e;
    });
}

QImage scale3x(const QImage& image) {
    return enlarge<3>(image, [](const Neighbours& n, const std::array<QRgb*, 3>& block) {
        if (n.b == n.h || n.d == n.f) {
            for (QRgb* line : block)
                std::fill_n(line, 3, n.e);
            return;
        }
        const bool db = n.d == n.b;
        const bool bf = n.b == n.f;
        const bool dh = n.d == n.h;
        const bool hf = n.h == n.f;
        block[0][0] = db ? n.d : n.e;
        block[0][1] = (db && n.e != n.c) || (bf && n.e != n.a) ? n.b : n.e;
        block[0][2] = bf ? n.f : n.e;
        block[1][0] = (db && n.e != n.g) || (dh && n.e != n.a) ? n.d : n.e;
        block[1][1] = n.e;
        block[1][2] = (bf && n.e != n.i) || (hf && n.e != n.c) ? n.f : n.e;
        block[2][0] = dh ? n.d : n.e;
        block[2][1] = (dh && n.e != n.i) || (hf && n.e != n.g) ? n.h : n.e;
        block[2][2] = hf ? n.f : n.e;
    });
}

QImage eagle(const QImage& image) {
    return enlarge<2>(image, [](const Neighbours& n, const std::array<QRgb*, 2>& block) {
        block[0][0] = n.a == n.b && n.a == n.d ? n.a : n.e;
        block[0][1] = n.c == n.b && n.c == n.f ? n.c : n.e;
        block[1][0] = n.g == n.d && n.g == n.h ? n.g : n.e;
        block[1][1] = n.i == n.f && n.i == n.h ? n.i : n.e;
    });
}
