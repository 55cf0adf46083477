#include "ImageExporterPvr.h"

#include "Error.h"
#include "SaveAside.h"

#include <optional>

namespace {

using Format = SettingsBase::OutputFormat;

/// Channel letters, first in the lowest byte, and their widths in bits in the same order.
constexpr quint64 channels(quint32 letters, quint32 bits) { return quint64{bits} << 32 | letters; }

/// Pixel format of PVR version 3: channels, or a small number for a compressed format.
std::optional<quint64> pixelFormat(Format format) {
    constexpr quint32 rgb = 0x00626772;
    constexpr quint32 rgba = 0x61626772;
    constexpr quint32 bgra = 0x61726762;
    switch (format) {
    case Format::RGBA8888:
        return channels(rgba, 0x08080808);
    case Format::BGRA8888:
        return channels(bgra, 0x08080808);
    case Format::RGBA4444:
        return channels(rgba, 0x04040404);
    case Format::RGB888:
        return channels(rgb, 0x00080808);
    case Format::RGB565:
        return channels(rgb, 0x00050605);
    case Format::RGBA5551:
        return channels(rgba, 0x01050505);
    case Format::PVRTC2:
        return 1;
    case Format::PVRTC4:
        return 3;
    case Format::PVRTC2_NOALPHA:
        return 0;
    case Format::PVRTC4_NOALPHA:
        return 2;
    case Format::ALPHA: // "a000": zeros as digits
        return channels(0x30303061, 0x00000008);
    case Format::ALPHA_INTENSITY: // "ai00"
        return channels(0x30306961, 0x00000808);
    case Format::ETC1:
        return 6;
    case Format::RGBA5555:
        break;
    }
    return {};
}

bool isPvrtc(Format format) {
    return format == Format::PVRTC2 || format == Format::PVRTC4 || format == Format::PVRTC2_NOALPHA ||
           format == Format::PVRTC4_NOALPHA;
}

bool isPowerOfTwo(int side) { return side > 0 && (side & (side - 1)) == 0; }

void checkPvrtcSize(const QImage& sheet) {
    if (sheet.width() != sheet.height())
        throw Error(
            Error::PvrLimit,
            QStringLiteral("PVRTC compression reqires squared textures. Please deactivate allow free size."));
    if (!isPowerOfTwo(sheet.width()) || !isPowerOfTwo(sheet.height()))
        throw Error(
            Error::PvrLimit,
            QStringLiteral("PVRTC reqires power of two (POT) textures. Please deactivate allow free size."));
}

} // namespace

QString ImageExporterPvr::defaultFileName() const { return QStringLiteral("out.pvr"); }

void ImageExporterPvr::write(const Settings& settings, const PackedTexture& texture) {
    const QImage sheet = renderTexture(settings, texture);
    const Format format = settings.outputFormat();
    const std::optional<quint64> pixels = pixelFormat(format);
    if (!pixels)
        throw Error(Error::PvrLimit, QStringLiteral("Output format not supported by PVR exporter"));
    if (isPvrtc(format))
        checkPvrtcSize(sheet);
    const QHash<QString, QVariant> options{
        {QStringLiteral("premultipliedAlpha"), settings.premultiplyAlpha()},
        {QStringLiteral("flipped"), settings.flipPVR()},
        {QStringLiteral("pixelformat"), *pixels},
    };
    if (!saveAside(fileName(), QStringLiteral("pvr"), sheet, options))
        throw Error(Error::TextureFile, QStringLiteral("Failed to write file %1").arg(fileName()));
}
