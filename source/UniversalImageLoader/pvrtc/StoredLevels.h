#pragma once

#include "ColorRows.h"
#include "WorkingImage.h"

namespace pvrtc {

/// The modulation of a whole picture with 2 bits a pixel: chooses the levels of the stored pixels, so that
/// they and the pixels that are interpolated from them, in the block and beyond its edges, are as near the
/// picture as they get.
class StoredLevels {
public:
    StoredLevels(const WorkingImage& image, const BlockGrid& grid, const ColorRows& colors);

    void choose();
    /// The first word of a block.
    std::uint32_t modulation(int column, int row) const;

private:
    class Stripe;
    int mode(int x, int y) const { return m_grid.at(x / 8, y / pvrtcBlockHeight).mode; }
    std::uint8_t& level(int x, int y) { return m_levels[static_cast<std::size_t>(y) * m_image.width() + x]; }
    std::uint8_t level(int x, int y) const {
        return m_levels[static_cast<std::size_t>(y) * m_image.width() + x];
    }

    const WorkingImage& m_image;
    const BlockGrid& m_grid;
    const ColorRows& m_colors;
    std::vector<std::uint8_t> m_levels; ///< eighths; those of interpolated pixels aren't used
};

} // namespace pvrtc
