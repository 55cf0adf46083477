#include "Hqx.h"

#include "NewImage.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <mutex>
#include <vector>

namespace {

/// The neighbours clockwise from the top left, as the bits of a pattern count them. In this order a quarter
/// turn of the neighbourhood is a rotation by two bits, and one corner's rules serve for all four.
enum Neighbour { TopLeft, Top, TopRight, Right, BottomRight, Bottom, BottomLeft, Left };

/// Shares of the pixel itself and of three neighbours of the top left corner, in sixteenths.
struct Blend {
    uint8_t self, corner, top, left;
};

constexpr Blend keep{16, 0, 0, 0};
constexpr Blend sides{8, 0, 4, 4};
constexpr Blend cornerAndTop{8, 4, 4, 0};
constexpr Blend cornerAndLeft{8, 4, 0, 4};
constexpr Blend littleCorner{12, 4, 0, 0};
constexpr Blend littleTop{12, 0, 4, 0};
constexpr Blend littleLeft{12, 0, 0, 4};
constexpr Blend littleSides{12, 0, 2, 2};
constexpr Blend hintOfSides{14, 0, 1, 1};
constexpr Blend mostlySides{4, 0, 6, 6};
constexpr Blend leftBeforeTop{10, 0, 2, 4};
constexpr Blend topBeforeLeft{10, 0, 4, 2};

/// What a corner does: one blend where two neighbours differ, another where they are alike. The pair of
/// neighbours is named by its first, counted clockwise in steps of a quarter turn from the pair of left and
/// top.
struct Rule {
    uint8_t pair;
    Blend different, alike;
};

enum Pair : uint8_t { LeftTop, TopRightSide, RightBottom, BottomLeftSide };

/// Rules of the top left corner, by letter from 'a'. Where both blends are the same no pair is looked at.
constexpr std::array<Rule, 14> rules{{
    {LeftTop, sides, sides},                    // a
    {LeftTop, cornerAndTop, cornerAndTop},      // b
    {LeftTop, cornerAndLeft, cornerAndLeft},    // c
    {LeftTop, littleTop, littleTop},            // d
    {LeftTop, littleLeft, littleLeft},          // e
    {LeftTop, littleCorner, littleCorner},      // f
    {BottomLeftSide, littleTop, leftBeforeTop}, // g
    {TopRightSide, littleLeft, topBeforeLeft},  // h
    {LeftTop, littleCorner, sides},             // i
    {LeftTop, littleCorner, mostlySides},       // j
    {LeftTop, keep, sides},                     // k
    {LeftTop, littleCorner, littleSides},       // l
    {LeftTop, keep, mostlySides},               // m
    {LeftTop, keep, hintOfSides},               // n
}};

/// The published table: the rule of the top left corner for each of the 256 patterns.
constexpr char topLeftRules[] = "aaceaaceaachaachaaceaaceaaceaaceaaceaaceaaceaaceaaceaaceaaceaace"
                                "aaceaaceaachaachaaceaaceaaceaaceaaceaaceaaceaachaaceaaceaaceaace"
                                "bdikbdjmbdkkbdfkbdikbdjmbdlkbdlkbgkkbglkbdlkbdlkbdlkbdlmbdlkbdfk"
                                "bdjmbdlnbdlkbdfnbdjmbdlnbdlmbdfnbgfkbgfnbdlkbgfnbdlkbdfnbdfkbdfn";

constexpr int corners = 4;

/// Rules of the four corners, clockwise from the top left, for each pattern.
std::array<std::array<const Rule*, corners>, 256> cornerRules;

int rotated(int pattern, int quarterTurns) {
    const int bits = 2 * quarterTurns;
    return ((pattern >> bits) | (pattern << (8 - bits))) & 0xFF;
}

/// Luma and chroma of a colour, packed as 0x00YYUUVV. Chroma is cut towards 0 before it is centred on 128.
uint32_t yuv(uint32_t colour) {
    const int r = (colour >> 16) & 0xFF;
    const int g = (colour >> 8) & 0xFF;
    const int b = colour & 0xFF;
    const int y = static_cast<int>(0.299 * r + 0.587 * g + 0.114 * b);
    const int u = static_cast<int>(-0.169 * r - 0.331 * g + 0.5 * b) + 128;
    const int v = static_cast<int>(0.5 * r - 0.419 * g - 0.081 * b) + 128;
    return static_cast<uint32_t>((y << 16) | (u << 8) | v);
}

bool differ(uint32_t yuv1, uint32_t yuv2) {
    const auto distance = [&](uint32_t mask) {
        return std::abs(static_cast<int>(yuv1 & mask) - static_cast<int>(yuv2 & mask));
    };
    return distance(0xFF0000) > 0x300000 || distance(0x00FF00) > 0x000700 || distance(0x0000FF) > 0x000006;
}

/// A pixel with its surroundings, as colours and in the space of comparison.
struct Surroundings {
    uint32_t self, selfYuv;
    std::array<uint32_t, 8> colour, yuv;

    int pattern() const {
        int bits = 0;
        for (int i = 0; i < 8; ++i)
            bits |= static_cast<int>(colour[i] != self && differ(selfYuv, yuv[i])) << i;
        return bits;
    }

    bool uniform() const {
        uint32_t difference = 0;
        for (const uint32_t neighbour : colour)
            difference |= neighbour ^ self;
        return difference == 0;
    }
};

uint32_t blend(const Surroundings& pixel, const Blend& shares, int corner) {
    const auto neighbour = [&](int place) { return pixel.colour[(place + 2 * corner) & 7]; };
    const uint32_t c0 = pixel.self;
    const uint32_t c1 = neighbour(TopLeft);
    const uint32_t c2 = neighbour(Top);
    const uint32_t c3 = neighbour(Left);
    // Red and blue have room for the sum of sixteen between them, and green is apart.
    const auto mixed = [&](uint32_t mask) {
        return (((c0 & mask) * shares.self + (c1 & mask) * shares.corner + (c2 & mask) * shares.top +
                 (c3 & mask) * shares.left) >>
                4) &
               mask;
    };
    return mixed(0x00FF00FF) | mixed(0x0000FF00);
}

uint32_t cornerColour(const Surroundings& pixel, const Rule& rule, int corner) {
    const int first = (Left + 2 * (rule.pair + corner)) & 7;
    const int second = (first + 2) & 7;
    const bool different = differ(pixel.yuv[first], pixel.yuv[second]);
    return blend(pixel, different ? rule.different : rule.alike, corner);
}

/// A row of pixels with its outermost pixels repeated on both sides, so that no neighbour is missing.
class PaddedRow {
public:
    explicit PaddedRow(int width) : m_colour(width + 2), m_yuv(width + 2) {}

    void load(const uint32_t* pixels, int width) {
        for (int x = 0; x < width; ++x) {
            m_colour[x + 1] = pixels[x] & 0x00FFFFFF;
            // Flat areas are common, and the conversion is what costs.
            m_yuv[x + 1] = x > 0 && m_colour[x + 1] == m_colour[x] ? m_yuv[x] : yuv(m_colour[x + 1]);
        }
        m_colour.front() = m_colour[1];
        m_yuv.front() = m_yuv[1];
        m_colour.back() = m_colour[width];
        m_yuv.back() = m_yuv[width];
    }

    /// Indices from -1 to the width.
    const uint32_t* colour() const { return m_colour.data() + 1; }
    const uint32_t* yuvs() const { return m_yuv.data() + 1; }

private:
    std::vector<uint32_t> m_colour, m_yuv;
};

Surroundings surroundings(const PaddedRow& above, const PaddedRow& here, const PaddedRow& below, int x) {
    const auto around = [x](const uint32_t* top, const uint32_t* middle, const uint32_t* bottom) {
        return std::array<uint32_t, 8>{top[x - 1],    top[x],    top[x + 1],    middle[x + 1],
                                       bottom[x + 1], bottom[x], bottom[x - 1], middle[x - 1]};
    };
    return {here.colour()[x], here.yuvs()[x], around(above.colour(), here.colour(), below.colour()),
            around(above.yuvs(), here.yuvs(), below.yuvs())};
}

void enlargeRow(const PaddedRow& above, const PaddedRow& here, const PaddedRow& below, int width,
                uint32_t* destination) {
    uint32_t* upper = destination;
    uint32_t* lower = destination + 2 * static_cast<size_t>(width);
    for (int x = 0; x < width; ++x, upper += 2, lower += 2) {
        const Surroundings pixel = surroundings(above, here, below, x);
        if (pixel.uniform()) {
            upper[0] = upper[1] = lower[0] = lower[1] = pixel.self;
            continue;
        }
        const auto& rule = cornerRules[pixel.pattern()];
        upper[0] = cornerColour(pixel, *rule[0], 0);
        upper[1] = cornerColour(pixel, *rule[1], 1);
        lower[1] = cornerColour(pixel, *rule[2], 2);
        lower[0] = cornerColour(pixel, *rule[3], 3);
    }
}

using Pixels = std::vector<uint32_t>;

Pixels enlarged(const Pixels& source, const QSize& size) {
    Pixels result(4 * source.size());
    hq2x_32(source.data(), result.data(), size.width(), size.height());
    return result;
}

/// The pixels of an image, each as `take` turns it.
template <class Take>
Pixels taken(const QImage& image, Take take) {
    Pixels pixels(static_cast<size_t>(image.width()) * image.height());
    auto to = pixels.begin();
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        to = std::transform(line, line + image.width(), to, take);
    }
    return pixels;
}

bool opaque(const QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        if (!std::all_of(line, line + image.width(), [](QRgb pixel) { return qAlpha(pixel) == 255; }))
            return false;
    }
    return true;
}

} // namespace

void hqxInit() {
    static std::once_flag once;
    std::call_once(once, [] {
        for (int pattern = 0; pattern < 256; ++pattern)
            for (int corner = 0; corner < corners; ++corner)
                cornerRules[pattern][corner] = &rules[topLeftRules[rotated(pattern, corner)] - 'a'];
    });
}

void hq2x_32(const uint32_t* source, uint32_t* destination, int width, int height) {
    if (width < 1 || height < 1)
        return;
    const size_t stride = static_cast<size_t>(width);
    std::array<PaddedRow, 3> rows{PaddedRow(width), PaddedRow(width), PaddedRow(width)};
    PaddedRow* above = &rows[0];
    PaddedRow* here = &rows[1];
    PaddedRow* below = &rows[2];
    above->load(source, width);
    here->load(source, width);
    for (int y = 0; y < height; ++y) {
        below->load(source + stride * std::min(y + 1, height - 1), width);
        enlargeRow(*above, *here, *below, width, destination + 4 * stride * y);
        PaddedRow* const free = above;
        above = here;
        here = below;
        below = free;
    }
}

QImage hq2x(const QImage& image) {
    if (image.isNull())
        return {};
    hqxInit();
    QImage result = newImage(2 * qint64{image.width()}, 2 * qint64{image.height()});
    const Pixels colour =
        enlarged(taken(image, [](QRgb p) { return qAlpha(p) == 0 ? 0 : p & RGB_MASK; }), image.size());
    // The alpha as a picture of greys. Where all of it is 255 the filter would give back just that.
    Pixels alpha;
    if (!opaque(image))
        alpha = enlarged(taken(image, [](QRgb p) { return qAlpha(p) * 0x010101U; }), image.size());
    size_t at = 0;
    for (int y = 0; y < result.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x, ++at)
            line[x] = colour[at] | (alpha.empty() ? 0xFFU : alpha[at] & 0xFF) << 24;
    }
    return result;
}
