#include "PvrReader.h"

#include "Etc1Encoder.h"
#include "Etc1Picture.h"
#include "ImageLimits.h"
#include "InflateDevice.h"
#include "PluginImage.h"
#include "PvrChannels.h"
#include "PvrHeader.h"
#include "PvrPixelFormat.h"
#include "PvrtcDecoder.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr qint64 inflateLimit = 1 << 30; ///< bytes

namespace Format = pvrPixelFormat;

bool isPvrtc(quint64 format) { return format <= Format::pvrtc4; }

/// How PVRTC lays out a texture. A side below that of a block is stored as one block.
struct PvrtcShape {
    explicit PvrtcShape(const PvrTexture& texture)
        : bits(texture.pixelFormat <= Format::pvrtc2 ? 2 : 4),
          hasAlpha(texture.pixelFormat == Format::pvrtc2 || texture.pixelFormat == Format::pvrtc4),
          width(std::max<qint64>(texture.width, bits == 2 ? 8 : 4)),
          height(std::max<qint64>(texture.height, 4)) {}

    bool isValid() const { return (width & (width - 1)) == 0 && (height & (height - 1)) == 0; }
    qint64 size() const { return width * height * bits / 8; }

    int bits;
    bool hasAlpha;
    qint64 width; ///< pixels
    qint64 height;
};

/// Bytes of the picture; 0 if nothing here reads it.
qint64 pixelBytes(const PvrTexture& texture) {
    if (!ImageLimits::accept(texture.width, texture.height) || texture.width < 1 || texture.height < 1)
        return 0;
    if (isPvrtc(texture.pixelFormat)) {
        const PvrtcShape shape(texture);
        return shape.isValid() ? shape.size() : 0;
    }
    if (texture.pixelFormat == Format::etc1)
        return static_cast<qint64>(
            etc1DataSize(static_cast<int>(texture.width), static_cast<int>(texture.height)));
    const std::optional<PvrChannels> channels = PvrChannels::of(texture.pixelFormat);
    return channels ? texture.width * texture.height * channels->bytesPerPixel() : 0;
}

QImage readPvrtc(ByteStream& stream, const PvrTexture& texture) {
    const PvrtcShape shape(texture);
    std::vector<quint8> blocks(static_cast<std::size_t>(shape.size()));
    QImage image = PluginImage::allocate(shape.width, shape.height, QImage::Format_ARGB32);
    if (image.isNull() || !stream.read(blocks.data(), shape.size()))
        return {};
    // Pixels of four bytes are turned into ours where they are.
    pvrtcDecode(blocks.data(), image.width(), image.height(), shape.bits, image.bits());
    const quint64 format = shape.hasAlpha ? Format::rgba8888 : Format::channels("rgbx", {8, 8, 8, 8});
    const std::optional<PvrChannels> channels = PvrChannels::of(format);
    for (int y = 0; y < image.height(); ++y)
        channels->unpack(image.constScanLine(y), image.width(), PluginImage::row(image, y));
    const QSize size(static_cast<int>(texture.width), static_cast<int>(texture.height));
    return image.size() == size ? image : image.copy(QRect(QPoint(0, 0), size));
}

QImage readChannels(ByteStream& stream, const PvrTexture& texture) {
    const std::optional<PvrChannels> channels = PvrChannels::of(texture.pixelFormat);
    QImage image = PluginImage::allocate(texture.width, texture.height, QImage::Format_ARGB32);
    std::vector<quint8> bytes(static_cast<std::size_t>(texture.width * channels->bytesPerPixel()));
    for (int y = 0; y < image.height(); ++y) {
        if (!stream.read(bytes.data(), static_cast<qint64>(bytes.size())))
            return {};
        channels->unpack(bytes.data(), image.width(), PluginImage::row(image, y));
    }
    return image;
}

/// For a texture that pixelBytes() knows.
QImage readPixels(ByteStream& stream, const PvrTexture& texture) {
    if (isPvrtc(texture.pixelFormat))
        return readPvrtc(stream, texture);
    if (texture.pixelFormat != Format::etc1)
        return readChannels(stream, texture);
    const auto width = static_cast<int>(texture.width);
    return readEtc1Picture(stream, width, static_cast<int>(texture.height), (width + 3) / 4, false)
        .convertToFormat(QImage::Format_ARGB32);
}

QImage readTexture(ByteStream& stream) {
    const std::optional<PvrTexture> texture = readPvrHeader(stream);
    const qint64 size = texture ? pixelBytes(*texture) : 0;
    return size > 0 && stream.mayHold(size) ? readPixels(stream, *texture) : QImage();
}

} // namespace

QImage readPvr(QIODevice& device) {
    ByteStream stream(device);
    return readTexture(stream);
}

QImage readPvrGz(QIODevice& device) {
    InflateDevice inflated(device, InflateDevice::Gzip, inflateLimit);
    ByteStream stream(inflated);
    quint8 header[pvr2HeaderSize];
    if (!stream.read(header, pvr2HeaderSize))
        return {};
    const std::optional<PvrTexture> texture = parsePvr2Header(header);
    const qint64 size = texture ? pixelBytes(*texture) : 0;
    const qint64 promised = pvr2DataSize(header);
    if (size == 0 || size > promised || promised > inflateLimit)
        return {};
    const QImage image = readPixels(stream, *texture);
    return stream.skip(promised - size) ? image : QImage();
}

QImage readPvrCcz(QIODevice& device) {
    constexpr int headerSize = 16;
    constexpr int newestVersion = 2;
    quint8 header[headerSize];
    if (device.read(reinterpret_cast<char*>(header), headerSize) != headerSize ||
        std::memcmp(header, "CCZ!", 4) != 0)
        return {};
    const quint16 compression = qFromBigEndian<quint16>(header + 4);
    const quint16 version = qFromBigEndian<quint16>(header + 6);
    if (compression != 0 || version > newestVersion || qFromBigEndian<quint32>(header + 12) < 1)
        return {};
    // The size that the header tells is a guess that may be too small, so it isn't needed.
    InflateDevice inflated(device, InflateDevice::Zlib, inflateLimit);
    ByteStream stream(inflated);
    QImage image = readTexture(stream);
    // Damage counts wherever it is.
    while (!image.isNull() && stream.skip(1 << 20)) {
    }
    return inflated.reachedEnd() ? image : QImage();
}
