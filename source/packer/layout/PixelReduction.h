#pragma once

#include "ReductionTables.h"

#include "SettingsBase.h"

#include <QRgb>

/// What a pixel can be in a texture's pixel format. The numbers are those of the reduction, not of the
/// settings.
enum class PixelFormatCode : int {
    RGB888 = 0,
    RGB565 = 1,
    RGBA4444 = 2,
    RGBA5551 = 3,
    RGBA5555 = 4,
    RGBA8888 = 5,
    Unreduced = 6, ///< BGRA8888 and what has no code of its own
    PVRTC2 = 7,
    PVRTC4 = 8,
    PVRTC2_NOALPHA = 9,
    PVRTC4_NOALPHA = 10,
    ALPHA = 11,
    ALPHA_INTENSITY = 12,
    ETC1 = 13,
};

PixelFormatCode pixelFormatCode(SettingsBase::OutputFormat format);

/// How a value finds its level.
enum class ReductionRule { Nearest, Linear };

/// The tables of the four channels of a pixel format. They live as long as the process.
struct ChannelTables {
    const ReductionTable& red;
    const ReductionTable& green;
    const ReductionTable& blue;
    const ReductionTable& alpha;

    QRgb reduced(QRgb pixel) const {
        return qRgba(red[qRed(pixel)], green[qGreen(pixel)], blue[qBlue(pixel)], alpha[qAlpha(pixel)]);
    }
};

/// Throws Error (PixelFormat) for ALPHA and ALPHA_INTENSITY, and with the linear rule for the compressed
/// formats, which are never reduced that way.
ChannelTables channelTables(PixelFormatCode code, ReductionRule rule);

/// Pixels 0xAARRGGBB, not premultiplied or premultiplied alike. Throw Error (PixelFormat) as channelTables()
/// does.
QRgb quantizeNearestPixel(QRgb pixel, PixelFormatCode code);
QRgb quantizeLinearPixel(QRgb pixel, PixelFormatCode code);

/// A channel of any value, rounded and cut to a byte, as the toolkit's qRound() rounds.
inline int byteOf(float value) {
    if (!(value > 0.0F))
        return 0;
    return value >= 255.0F ? 255 : static_cast<int>(value + 0.5F);
}

/// The nearest rule for channels of any value. Throws Error (PixelFormat) for the compressed formats too.
QRgb quantizeFloatPixel(float red, float green, float blue, float alpha, PixelFormatCode code);

/// The tables of quantizeFloatPixel(). Throws like it.
ChannelTables floatChannelTables(PixelFormatCode code);
