#pragma once

#include <QtGlobal>

#include <limits>

/// 64-bit sums and products that stop at the ends of the range. Sides and paddings come from projects and
/// command lines, where nothing keeps them from being absurd.
namespace saturated {

inline qint64 add(qint64 a, qint64 b) {
    qint64 sum = 0;
    if (!__builtin_add_overflow(a, b, &sum))
        return sum;
    return a < 0 ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
}

inline qint64 multiply(qint64 a, qint64 b) {
    qint64 product = 0;
    if (!__builtin_mul_overflow(a, b, &product))
        return product;
    return (a < 0) != (b < 0) ? std::numeric_limits<qint64>::min() : std::numeric_limits<qint64>::max();
}

/// The nearest value that an int holds.
inline int toInt(qint64 value) {
    return static_cast<int>(
        qBound<qint64>(std::numeric_limits<int>::min(), value, std::numeric_limits<int>::max()));
}

} // namespace saturated
