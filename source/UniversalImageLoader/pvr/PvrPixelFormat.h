#pragma once

#include <QtGlobal>

#include <initializer_list>
#include <string_view>

/// Pixel formats as version 3 of the PVR container numbers them: a small number for a compressed format, else
/// up to four channel letters in the low half, the first in the lowest byte, and their widths in bits in the
/// high half, in the same order.
namespace pvrPixelFormat {

constexpr quint64 channels(std::string_view letters, std::initializer_list<int> widths) {
    quint64 format = 0;
    int shift = 0;
    for (const char letter : letters) {
        format |= static_cast<quint64>(letter) << shift;
        shift += 8;
    }
    shift = 32;
    for (const int width : widths) {
        format |= static_cast<quint64>(width) << shift;
        shift += 8;
    }
    return format;
}

inline constexpr quint64 pvrtc2Opaque = 0;
inline constexpr quint64 pvrtc2 = 1;
inline constexpr quint64 pvrtc4Opaque = 2;
inline constexpr quint64 pvrtc4 = 3;
inline constexpr quint64 etc1 = 6;

inline constexpr quint64 rgba8888 = channels("rgba", {8, 8, 8, 8});
inline constexpr quint64 bgra8888 = channels("bgra", {8, 8, 8, 8});
inline constexpr quint64 rgba4444 = channels("rgba", {4, 4, 4, 4});
inline constexpr quint64 rgba5551 = channels("rgba", {5, 5, 5, 1});
inline constexpr quint64 rgb888 = channels("rgb", {8, 8, 8});
inline constexpr quint64 rgb565 = channels("rgb", {5, 6, 5});
inline constexpr quint64 alpha = channels("a000", {8}); ///< unused places are the digit, if two are free
inline constexpr quint64 alphaIntensity = channels("ai00", {8, 8});

} // namespace pvrPixelFormat
