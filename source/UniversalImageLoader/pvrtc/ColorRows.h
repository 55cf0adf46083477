#pragma once

#include "BlendedRow.h"
#include "BlockGrid.h"

namespace pvrtc {

/// The colours of a grid's blocks alone.
class ColorRows {
public:
    explicit ColorRows(const BlockGrid& grid)
        : m_columns(static_cast<std::size_t>(grid.columns())), m_rows(grid.rows()) {
        m_colors.reserve(m_columns * static_cast<std::size_t>(m_rows));
        for (int row = 0; row < grid.rows(); ++row)
            for (int column = 0; column < grid.columns(); ++column)
                m_colors.push_back(grid.at(column, row).colors);
    }

    /// The two colours of each pixel of a row.
    template <int Bits>
    void blendPixels(int y, PixelEnds* ends) const {
        const int fromCentre = y + pvrtcBlockHeight / 2;
        const int below = fromCentre / pvrtcBlockHeight % m_rows;
        const int above = below == 0 ? m_rows - 1 : below - 1;
        blendRow<Bits>(row(above), row(below), fromCentre % pvrtcBlockHeight, ends);
    }

private:
    std::span<const PvrtcColorPair> row(int number) const {
        return {m_colors.data() + static_cast<std::size_t>(number) * m_columns, m_columns};
    }

    std::size_t m_columns;
    int m_rows;
    std::vector<PvrtcColorPair> m_colors;
};

} // namespace pvrtc
