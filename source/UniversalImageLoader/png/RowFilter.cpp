#include "RowFilter.h"

#include <cstdlib>
#include <cstring>

namespace {

enum Filter : std::uint8_t { None, Sub, Up, Average, Paeth, FilterCount };

using Bytes = const std::uint8_t*;

// Loops that a compiler turns into vector code: the pixel before a row is zero, so that its first pixel
// stands apart.

void filterSub(Bytes row, std::uint8_t* target, std::size_t pixel, std::size_t size) {
    std::memcpy(target, row, pixel);
    for (std::size_t i = pixel; i < size; ++i)
        target[i] = static_cast<std::uint8_t>(row[i] - row[i - pixel]);
}

void filterUp(Bytes row, Bytes above, std::uint8_t* target, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        target[i] = static_cast<std::uint8_t>(row[i] - above[i]);
}

void filterAverage(Bytes row, Bytes above, std::uint8_t* target, std::size_t pixel, std::size_t size) {
    for (std::size_t i = 0; i < pixel; ++i)
        target[i] = static_cast<std::uint8_t>(row[i] - (above[i] >> 1));
    for (std::size_t i = pixel; i < size; ++i)
        target[i] = static_cast<std::uint8_t>(row[i] - ((row[i - pixel] + above[i]) >> 1));
}

void filterPaeth(Bytes row, Bytes above, std::uint8_t* target, std::size_t pixel, std::size_t size) {
    for (std::size_t i = 0; i < pixel; ++i)
        target[i] = static_cast<std::uint8_t>(row[i] - above[i]);
    for (std::size_t i = pixel; i < size; ++i) {
        const std::int16_t a = row[i - pixel];
        const std::int16_t b = above[i];
        const std::int16_t c = above[i - pixel];
        const auto toA = static_cast<std::int16_t>(std::abs(b - c));
        const auto toB = static_cast<std::int16_t>(std::abs(a - c));
        const auto toC = static_cast<std::int16_t>(std::abs(a + b - 2 * c));
        const std::int16_t nearest = toA <= toB && toA <= toC ? a : toB <= toC ? b : c;
        target[i] = static_cast<std::uint8_t>(row[i] - nearest);
    }
}

std::uint32_t sumOfDifferences(Bytes bytes, std::size_t size) {
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < size; ++i)
        sum += static_cast<std::uint32_t>(std::abs(static_cast<std::int8_t>(bytes[i])));
    return sum;
}

} // namespace

RowFilter::RowFilter(std::size_t bytesPerPixel, std::size_t rowBytes)
    : m_pixel(bytesPerPixel), m_size(rowBytes), m_trial(rowBytes) {}

void RowFilter::none(const std::uint8_t* row, std::uint8_t* target) const {
    target[0] = None;
    std::memcpy(target + 1, row, m_size);
}

void RowFilter::adaptive(const std::uint8_t* row, const std::uint8_t* above, std::uint8_t* target) {
    none(row, target);
    std::uint32_t best = sumOfDifferences(row, m_size);
    for (std::uint8_t filter = Sub; filter < FilterCount && best > 0; ++filter) {
        switch (filter) {
        case Sub:
            filterSub(row, m_trial.data(), m_pixel, m_size);
            break;
        case Up:
            filterUp(row, above, m_trial.data(), m_size);
            break;
        case Average:
            filterAverage(row, above, m_trial.data(), m_pixel, m_size);
            break;
        default:
            filterPaeth(row, above, m_trial.data(), m_pixel, m_size);
        }
        const std::uint32_t sum = sumOfDifferences(m_trial.data(), m_size);
        if (sum >= best)
            continue;
        best = sum;
        target[0] = filter;
        std::memcpy(target + 1, m_trial.data(), m_size);
    }
}
