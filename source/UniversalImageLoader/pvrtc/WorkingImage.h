#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace pvrtc {

/// The picture that the search works on, in rows of one length whatever its width is.
class WorkingImage {
public:
    static constexpr int pitch = 4096; ///< in pixels; also the largest height
    WorkingImage(const std::uint8_t* rgba, int width, int height);

    int width() const { return m_width; }
    int height() const { return m_height; }
    /// Red, green, blue, alpha of its pixels from the lowest byte on.
    const std::uint32_t* row(int y) const { return m_pixels.get() + static_cast<std::size_t>(y) * pitch; }

private:
    std::unique_ptr<std::uint32_t[]> m_pixels;
    int m_width;
    int m_height;
};

} // namespace pvrtc
