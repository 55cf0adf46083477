#pragma once

#include <QSize>

#include <random>
#include <vector>

/// What a set of sizes is like.
enum class Character { OneSize, FewSizes, Bars, Anything, Icons, Flat };
constexpr int characterCount = 6;

/// Up to `most` sizes, in pixels.
inline std::vector<QSize> randomSizes(std::mt19937& random, Character character, int most) {
    const auto number = [&](int low, int high) {
        return std::uniform_int_distribution<int>(low, high)(random);
    };
    std::vector<QSize> sizes(static_cast<size_t>(number(1, most)));
    const int edge = number(3, 40);
    for (QSize& size : sizes) {
        const int side = 8 << number(0, 3);
        switch (character) {
        case Character::OneSize:
            size = QSize(edge, edge + 5);
            break;
        case Character::FewSizes:
            size = QSize(4 * number(1, 3), 4 * number(1, 3));
            break;
        case Character::Bars:
            size = number(0, 1) ? QSize(number(1, 4), number(20, 90)) : QSize(number(20, 90), number(1, 4));
            break;
        case Character::Anything:
            size = QSize(number(1, 60), number(1, 60));
            break;
        case Character::Icons: // squares, most of them trimmed by a little
            size =
                QSize(side - number(0, 2) * number(0, side / 8), side - number(0, 2) * number(0, side / 8));
            break;
        case Character::Flat:
            size = QSize(number(0, 3), number(0, 3));
            break;
        }
    }
    return sizes;
}
