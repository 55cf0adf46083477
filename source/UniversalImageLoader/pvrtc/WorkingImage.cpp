#include "BlockGrid.h"

#include <cstring>

namespace pvrtc {

WorkingImage::WorkingImage(const std::uint8_t* rgba, int width, int height)
    // Two pixels more: the format's own length of the buffer. Only the pages of the picture are ever touched.
    : m_pixels(std::make_unique_for_overwrite<std::uint32_t[]>(std::size_t{pitch} * pitch + 2)),
      m_width(width), m_height(height) {
    const std::size_t rowBytes = static_cast<std::size_t>(width) * 4;
    for (int y = 0; y < height; ++y)
        std::memcpy(m_pixels.get() + static_cast<std::size_t>(y) * pitch,
                    rgba + static_cast<std::size_t>(y) * rowBytes, rowBytes);
}

} // namespace pvrtc
