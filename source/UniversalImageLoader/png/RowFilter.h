#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

/// Filters rows of 8-bit samples as PNG has them (RFC 2083, chapter 6).
class RowFilter {
public:
    /// `bytesPerPixel`: 3 or 4; `rowBytes`: of a row of pixels.
    RowFilter(std::size_t bytesPerPixel, std::size_t rowBytes);

    /// Filters a row with what promises the smallest differences, by the format's own heuristic: the smallest
    /// sum of absolute values. `above` is the row before it, zeros for the first one. `target` takes the
    /// filter's number and the row.
    void adaptive(const std::uint8_t* row, const std::uint8_t* above, std::uint8_t* target);

    /// The same with no filter.
    void none(const std::uint8_t* row, std::uint8_t* target) const;

private:
    const std::size_t m_pixel;
    const std::size_t m_size;
    std::vector<std::uint8_t> m_trial;
};
