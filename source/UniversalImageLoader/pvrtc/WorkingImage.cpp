#include "WorkingImage.h"

#include <cstring>

namespace pvrtc {

WorkingImage::WorkingImage(const std::uint8_t* rgba, int width, int height)
    // Two pixels more, past which no vector reaches. Only the pages that the picture fills are ever touched.
    : m_pixels(std::make_unique_for_overwrite<std::uint32_t[]>(std::size_t{pitch} * pitch + 2)),
      m_width(width), m_height(height) {
    const std::size_t rowBytes = static_cast<std::size_t>(width) * 4;
    for (int y = 0; y < height; ++y)
        std::memcpy(m_pixels.get() + static_cast<std::size_t>(y) * pitch,
                    rgba + static_cast<std::size_t>(y) * rowBytes, rowBytes);
}

} // namespace pvrtc
