#include "ImageExporterPvr.h"

#include "Error.h"
#include "PixelFormats.h"
#include "PvrPixelFormat.h"
#include "SaveAside.h"

#include <optional>

namespace {

using Format = SettingsBase::OutputFormat;

std::optional<quint64> pixelFormat(Format format) {
    switch (format) {
    case Format::RGBA8888:
        return pvrPixelFormat::rgba8888;
    case Format::BGRA8888:
        return pvrPixelFormat::bgra8888;
    case Format::RGBA4444:
        return pvrPixelFormat::rgba4444;
    case Format::RGB888:
        return pvrPixelFormat::rgb888;
    case Format::RGB565:
        return pvrPixelFormat::rgb565;
    case Format::RGBA5551:
        return pvrPixelFormat::rgba5551;
    case Format::PVRTC2:
        return pvrPixelFormat::pvrtc2;
    case Format::PVRTC4:
        return pvrPixelFormat::pvrtc4;
    case Format::PVRTC2_NOALPHA:
        return pvrPixelFormat::pvrtc2Opaque;
    case Format::PVRTC4_NOALPHA:
        return pvrPixelFormat::pvrtc4Opaque;
    case Format::ALPHA:
        return pvrPixelFormat::alpha;
    case Format::ALPHA_INTENSITY:
        return pvrPixelFormat::alphaIntensity;
    case Format::ETC1:
        return pvrPixelFormat::etc1;
    case Format::RGBA5555:
        break;
    }
    return {};
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
    if (isPvrtcFormat(format))
        checkPvrtcSize(sheet);
    const QHash<QString, QVariant> options{
        {QStringLiteral("premultipliedAlpha"), settings.premultiplyAlpha()},
        {QStringLiteral("flipped"), settings.flipPVR()},
        {QStringLiteral("pixelformat"), *pixels},
    };
    if (!saveAside(fileName(), QStringLiteral("pvr"), sheet, options))
        throw Error(Error::TextureFile, QStringLiteral("Failed to write file %1").arg(fileName()));
}
