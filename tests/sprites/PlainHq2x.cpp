#include "PlainHq2x.h"

#include <QStringList>

#include <array>
#include <cstdlib>
#include <map>

namespace {

struct Case {
    const char* patterns;
    const char* corners;
};

// Patterns, and what the corners of the block do, from the top left in reading order: the number of a blend,
// or two with the edge that decides: a left and top, b top and right, c bottom and left, d right and bottom.
// The first number is for an edge between different pixels.
constexpr Case cases[] = {
    {"0 1 4 32 128 5 132 160 33 129 36 133 164 161 37 165", "20 20 20 20"},
    {"2 34 130 162", "22 21 20 20"},
    {"16 17 48 49", "20 22 20 21"},
    {"64 65 68 69", "20 20 21 22"},
    {"8 12 136 140", "21 20 22 20"},
    {"3 35 131 163", "11 21 20 20"},
    {"6 38 134 166", "22 12 20 20"},
    {"20 21 52 53", "20 11 20 21"},
    {"144 145 176 177", "20 22 20 12"},
    {"192 193 196 197", "20 20 21 11"},
    {"96 97 100 101", "20 20 12 22"},
    {"40 44 168 172", "21 20 11 20"},
    {"9 13 137 141", "12 20 22 20"},
    {"18 50", "22 b10/20 20 21"},
    {"80 81", "20 22 21 d10/20"},
    {"72 76", "21 20 c10/20 22"},
    {"10 138", "a10/20 21 22 20"},
    {"66", "22 21 21 22"},
    {"24", "21 22 22 21"},
    {"7 39 135", "11 12 20 20"},
    {"148 149 180", "20 11 20 12"},
    {"224 228 225", "20 20 12 11"},
    {"41 169 45", "12 20 11 20"},
    {"22 54", "22 b0/20 20 21"},
    {"208 209", "20 22 21 d0/20"},
    {"104 108", "21 20 c0/20 22"},
    {"11 139", "a0/20 21 22 20"},
    {"19 51", "b11/60 b10/90 20 21"},
    {"146 178", "22 b10/90 20 b12/61"},
    {"84 85", "20 d11/60 21 d10/90"},
    {"112 113", "20 22 d12/61 d10/90"},
    {"200 204", "21 20 c10/90 c11/60"},
    {"73 77", "c12/61 20 c10/90 22"},
    {"42 170", "a10/90 21 a11/60 20"},
    {"14 142", "a10/90 a12/61 22 20"},
    {"67", "11 21 21 22"},
    {"70", "22 12 21 22"},
    {"28", "21 11 22 21"},
    {"152", "21 22 22 12"},
    {"194", "22 21 21 11"},
    {"98", "22 21 12 22"},
    {"56", "21 22 11 21"},
    {"25", "12 22 22 21"},
    {"26 31", "a0/20 b0/20 22 21"},
    {"82 214", "22 b0/20 21 d0/20"},
    {"88 248", "21 22 c0/20 d0/20"},
    {"74 107", "a0/20 21 c0/20 22"},
    {"27", "a0/20 10 22 21"},
    {"86", "22 b0/20 21 10"},
    {"216", "21 22 10 d0/20"},
    {"106", "10 21 c0/20 22"},
    {"30", "10 b0/20 22 21"},
    {"210", "22 10 21 d0/20"},
    {"120", "21 22 c0/20 10"},
    {"75", "a0/20 21 10 22"},
    {"29", "12 11 22 21"},
    {"198", "22 12 21 11"},
    {"184", "21 22 11 12"},
    {"99", "11 21 12 22"},
    {"57", "12 22 11 21"},
    {"71", "11 12 21 22"},
    {"156", "21 11 22 12"},
    {"226", "22 21 12 11"},
    {"60", "21 11 11 21"},
    {"195", "11 21 21 11"},
    {"102", "22 12 12 22"},
    {"153", "12 22 22 12"},
    {"58", "a10/70 b10/70 11 21"},
    {"83", "11 b10/70 21 d10/70"},
    {"92", "21 11 c10/70 d10/70"},
    {"202", "a10/70 21 c10/70 11"},
    {"78", "a10/70 12 c10/70 22"},
    {"154", "a10/70 b10/70 22 12"},
    {"114", "22 b10/70 12 d10/70"},
    {"89", "12 22 c10/70 d10/70"},
    {"90", "a10/70 b10/70 c10/70 d10/70"},
    {"55 23", "b11/60 b0/90 20 21"},
    {"182 150", "22 b0/90 20 b12/61"},
    {"213 212", "20 d11/60 21 d0/90"},
    {"241 240", "20 22 d12/61 d0/90"},
    {"236 232", "21 20 c0/90 c11/60"},
    {"109 105", "c12/61 20 c0/90 22"},
    {"171 43", "a0/90 21 a11/60 20"},
    {"143 15", "a0/90 a12/61 22 20"},
    {"124", "21 11 c0/20 10"},
    {"203", "a0/20 21 10 11"},
    {"62", "10 b0/20 11 21"},
    {"211", "11 10 21 d0/20"},
    {"118", "22 b0/20 12 10"},
    {"217", "12 22 10 d0/20"},
    {"110", "10 12 c0/20 22"},
    {"155", "a0/20 10 22 12"},
    {"188", "21 11 11 12"},
    {"185", "12 22 11 12"},
    {"61", "12 11 11 21"},
    {"157", "12 11 22 12"},
    {"103", "11 12 12 22"},
    {"227", "11 21 12 11"},
    {"230", "22 12 12 11"},
    {"199", "11 12 21 11"},
    {"220", "21 11 c10/70 d0/20"},
    {"158", "a10/70 b0/20 22 12"},
    {"234", "a10/70 21 c0/20 11"},
    {"242", "22 b10/70 12 d0/20"},
    {"59", "a0/20 b10/70 11 21"},
    {"121", "12 22 c0/20 d10/70"},
    {"87", "11 b0/20 21 d10/70"},
    {"79", "a0/20 12 c10/70 22"},
    {"122", "a10/70 b10/70 c0/20 d10/70"},
    {"94", "a10/70 b0/20 c10/70 d10/70"},
    {"218", "a10/70 b10/70 c10/70 d0/20"},
    {"91", "a0/20 b10/70 c10/70 d10/70"},
    {"229", "20 20 12 11"},
    {"167", "11 12 20 20"},
    {"173", "12 20 11 20"},
    {"181", "20 11 20 12"},
    {"186", "a10/70 b10/70 11 12"},
    {"115", "11 b10/70 12 d10/70"},
    {"93", "12 11 c10/70 d10/70"},
    {"206", "a10/70 12 c10/70 11"},
    {"205 201", "12 20 c10/70 11"},
    {"174 46", "a10/70 12 11 20"},
    {"179 147", "11 b10/70 20 12"},
    {"117 116", "20 11 12 d10/70"},
    {"189", "12 11 11 12"},
    {"231", "11 12 12 11"},
    {"126", "10 b0/20 c0/20 10"},
    {"219", "a0/20 10 10 d0/20"},
    {"125", "c12/61 11 c0/90 10"},
    {"221", "12 d11/60 10 d0/90"},
    {"207", "a0/90 a12/61 10 11"},
    {"238", "10 12 c0/90 c11/60"},
    {"190", "10 b0/90 11 b12/61"},
    {"187", "a0/90 10 a11/60 12"},
    {"243", "11 10 d12/61 d0/90"},
    {"119", "b11/60 b0/90 12 10"},
    {"237 233", "12 20 c0/100 11"},
    {"175 47", "a0/100 12 11 20"},
    {"183 151", "11 b0/100 20 12"},
    {"245 244", "20 11 12 d0/100"},
    {"250", "10 10 c0/20 d0/20"},
    {"123", "a0/20 10 c0/20 10"},
    {"95", "a0/20 b0/20 10 10"},
    {"222", "10 b0/20 10 d0/20"},
    {"252", "21 11 c0/20 d0/100"},
    {"249", "12 22 c0/100 d0/20"},
    {"235", "a0/20 21 c0/100 11"},
    {"111", "a0/100 12 c0/20 22"},
    {"63", "a0/100 b0/20 11 21"},
    {"159", "a0/20 b0/100 22 12"},
    {"215", "11 b0/100 21 d0/20"},
    {"246", "22 b0/20 12 d0/100"},
    {"254", "10 b0/20 c0/20 d0/100"},
    {"253", "12 11 c0/100 d0/100"},
    {"251", "a0/20 10 c0/100 d0/20"},
    {"239", "a0/100 12 c0/100 11"},
    {"127", "a0/100 b0/20 c0/20 10"},
    {"191", "a0/100 b0/100 11 12"},
    {"223", "a0/20 b0/100 10 d0/20"},
    {"247", "11 b0/100 12 d0/100"},
    {"255", "a0/100 b0/100 c0/100 d0/100"},
};

using Corners = QStringList;

const std::map<int, Corners>& casesByPattern() {
    static const std::map<int, Corners> table = [] {
        std::map<int, Corners> all;
        for (const Case& entry : cases)
            for (const QString& pattern : QString::fromLatin1(entry.patterns).split(QLatin1Char(' ')))
                all[pattern.toInt()] = QString::fromLatin1(entry.corners).split(QLatin1Char(' '));
        return all;
    }();
    return table;
}

/// The window, w[1] to w[9] in reading order.
using Window = std::array<QRgb, 10>;

bool different(QRgb p, QRgb q) {
    const auto y = [](QRgb c) { return int(0.299 * qRed(c) + 0.587 * qGreen(c) + 0.114 * qBlue(c)); };
    const auto u = [](QRgb c) { return int(-0.169 * qRed(c) - 0.331 * qGreen(c) + 0.5 * qBlue(c)) + 128; };
    const auto v = [](QRgb c) { return int(0.5 * qRed(c) - 0.419 * qGreen(c) - 0.081 * qBlue(c)) + 128; };
    return std::abs(y(p) - y(q)) > 0x30 || std::abs(u(p) - u(q)) > 7 || std::abs(v(p) - v(q)) > 6;
}

QRgb mixed(QRgb a, int wa, QRgb b, int wb, QRgb c, int wc) {
    const auto channel = [&](int (*of)(QRgb)) {
        return (of(a) * wa + of(b) * wb + of(c) * wc) / (wa + wb + wc);
    };
    return qRgb(channel(qRed), channel(qGreen), channel(qBlue));
}

/// Places of the corner's own diagonal neighbour and of the two beside it, as the published names of the
/// blends need them: the first neighbour is the one counter-clockwise from the corner.
struct CornerPlaces {
    int diagonal, first, second;
};
constexpr CornerPlaces places[] = {{1, 4, 2}, {3, 2, 6}, {7, 8, 4}, {9, 6, 8}};

QRgb blended(const Window& w, int corner, int number) {
    const QRgb e = w[5];
    const QRgb x = w[places[corner].diagonal];
    const QRgb p = w[places[corner].first];
    const QRgb q = w[places[corner].second];
    switch (number) {
    case 0:
        return e;
    case 10:
        return mixed(e, 3, x, 1, e, 0);
    case 11:
        return mixed(e, 3, p, 1, e, 0);
    case 12:
        return mixed(e, 3, q, 1, e, 0);
    case 20:
        return mixed(e, 2, p, 1, q, 1);
    case 21:
        return mixed(e, 2, x, 1, q, 1);
    case 22:
        return mixed(e, 2, x, 1, p, 1);
    case 60:
        return mixed(e, 5, q, 2, p, 1);
    case 61:
        return mixed(e, 5, p, 2, q, 1);
    case 70:
        return mixed(e, 6, p, 1, q, 1);
    case 90:
        return mixed(e, 2, p, 3, q, 3);
    case 100:
        return mixed(e, 14, p, 1, q, 1);
    }
    std::abort();
}

bool edge(const Window& w, QChar name) {
    switch (name.unicode()) {
    case 'a':
        return different(w[4], w[2]);
    case 'b':
        return different(w[2], w[6]);
    case 'c':
        return different(w[8], w[4]);
    case 'd':
        return different(w[6], w[8]);
    }
    std::abort();
}

QRgb cornerPixel(const Window& w, int corner, const QString& rule) {
    if (rule[0].isDigit())
        return blended(w, corner, rule.toInt());
    const QStringList numbers = rule.mid(1).split(QLatin1Char('/'));
    return blended(w, corner, numbers[edge(w, rule[0]) ? 0 : 1].toInt());
}

} // namespace

QImage plainHq2x(const QImage& image, std::set<int>& patterns) {
    QImage result(image.width() * 2, image.height() * 2, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            Window w{};
            for (int i = 0; i < 9; ++i)
                w[i + 1] = image.pixel(qBound(0, x + i % 3 - 1, image.width() - 1),
                                       qBound(0, y + i / 3 - 1, image.height() - 1));
            int pattern = 0;
            int flag = 1;
            for (int i = 1; i <= 9; ++i) {
                if (i == 5)
                    continue;
                if (different(w[i], w[5]))
                    pattern |= flag;
                flag <<= 1;
            }
            patterns.insert(pattern);
            const Corners& rules = casesByPattern().at(pattern);
            for (int corner = 0; corner < 4; ++corner)
                result.setPixel(2 * x + corner % 2, 2 * y + corner / 2,
                                cornerPixel(w, corner, rules[corner]));
        }
    }
    return result;
}
