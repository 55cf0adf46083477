#include "PixelReduction.h"

#include "Error.h"

namespace {

constexpr ReductionTable identity = identityTable();
constexpr ReductionTable opaque = opaqueTable();

/// The tables of one rule, by bits.
struct Family {
    ReductionTable one, four, five, six;
};

constexpr Family nearest{nearestTable(1), nearestTable(4), nearestTable(5), nearestTable(6)};
constexpr Family linear{linearTable(1), linearTable(4), linearTable(5), linearTable(6)};

[[noreturn]] void refuse() {
    throw Error(Error::PixelFormat, QStringLiteral("Invalid pixel format for quant_nn"));
}

} // namespace

PixelFormatCode pixelFormatCode(SettingsBase::OutputFormat format) {
    using Format = SettingsBase::OutputFormat;
    switch (format) {
    case Format::RGB888:
        return PixelFormatCode::RGB888;
    case Format::RGB565:
        return PixelFormatCode::RGB565;
    case Format::RGBA4444:
        return PixelFormatCode::RGBA4444;
    case Format::RGBA5551:
        return PixelFormatCode::RGBA5551;
    case Format::RGBA5555:
        return PixelFormatCode::RGBA5555;
    case Format::RGBA8888:
        return PixelFormatCode::RGBA8888;
    case Format::BGRA8888:
        return PixelFormatCode::Unreduced;
    case Format::PVRTC2:
        return PixelFormatCode::PVRTC2;
    case Format::PVRTC4:
        return PixelFormatCode::PVRTC4;
    case Format::PVRTC2_NOALPHA:
        return PixelFormatCode::PVRTC2_NOALPHA;
    case Format::PVRTC4_NOALPHA:
        return PixelFormatCode::PVRTC4_NOALPHA;
    case Format::ALPHA:
        return PixelFormatCode::ALPHA;
    case Format::ALPHA_INTENSITY:
        return PixelFormatCode::ALPHA_INTENSITY;
    case Format::ETC1:
        return PixelFormatCode::ETC1;
    }
    return PixelFormatCode::Unreduced;
}

ChannelTables channelTables(PixelFormatCode code, ReductionRule rule) {
    const Family& family = rule == ReductionRule::Nearest ? nearest : linear;
    switch (code) {
    case PixelFormatCode::RGB888:
        return {identity, identity, identity, opaque};
    case PixelFormatCode::RGB565:
        return {family.five, family.six, family.five, opaque};
    case PixelFormatCode::RGBA4444:
        return {family.four, family.four, family.four, family.four};
    case PixelFormatCode::RGBA5551:
        return {family.five, family.five, family.five, family.one};
    case PixelFormatCode::RGBA5555:
        return {family.five, family.five, family.five, family.five};
    case PixelFormatCode::RGBA8888:
    case PixelFormatCode::Unreduced:
        return {identity, identity, identity, identity};
    case PixelFormatCode::PVRTC2:
    case PixelFormatCode::PVRTC4:
    case PixelFormatCode::PVRTC2_NOALPHA:
    case PixelFormatCode::PVRTC4_NOALPHA:
    case PixelFormatCode::ETC1:
        if (rule == ReductionRule::Nearest)
            return {identity, identity, identity, identity};
        break;
    case PixelFormatCode::ALPHA:
    case PixelFormatCode::ALPHA_INTENSITY:
        break;
    }
    refuse();
}

ChannelTables floatChannelTables(PixelFormatCode code) {
    if (static_cast<int>(code) >= static_cast<int>(PixelFormatCode::PVRTC2))
        refuse();
    return channelTables(code, ReductionRule::Nearest);
}

QRgb quantizeNearestPixel(QRgb pixel, PixelFormatCode code) {
    return channelTables(code, ReductionRule::Nearest).reduced(pixel);
}

QRgb quantizeLinearPixel(QRgb pixel, PixelFormatCode code) {
    return channelTables(code, ReductionRule::Linear).reduced(pixel);
}

QRgb quantizeFloatPixel(float red, float green, float blue, float alpha, PixelFormatCode code) {
    const QRgb rounded = qRgba(byteOf(red), byteOf(green), byteOf(blue), byteOf(alpha));
    return floatChannelTables(code).reduced(rounded);
}
