#include "PvrHeader.h"

#include "PvrPixelFormat.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <limits>

namespace {

namespace Format = pvrPixelFormat;

constexpr quint32 version3 = 0x03525650; ///< "PVR", 3
constexpr int headerSize1 = 44;
constexpr int headerSize2 = pvr2HeaderSize;
constexpr int headerSize3 = 52;
constexpr char magic2[] = {'P', 'V', 'R', '!'};
constexpr int magicOffset = 44;

enum Flag : quint32 { TypeMask = 0xFF, Twiddled = 0x200, HasAlpha = 0x8000, Flipped = 0x10000 };

/// What version 2 tells of a pixel format.
struct Layout {
    quint64 pixelFormat;
    quint32 flags; ///< pixel type, and HasAlpha
    quint32 bits;  ///< a pixel
    quint32 red, green, blue, alpha;
};

constexpr Layout layouts[] = {
    {Format::rgba8888, 0x8012, 32, 0x000000FF, 0x0000FF00, 0x00FF0000, 0xFF000000},
    {Format::bgra8888, 0x801A, 32, 0x00FF0000, 0x0000FF00, 0x000000FF, 0xFF000000},
    {Format::rgba4444, 0x8010, 16, 0xF000, 0x0F00, 0x00F0, 0x000F},
    {Format::rgba5551, 0x8011, 16, 0xF800, 0x07C0, 0x003E, 1},
    {Format::rgb565, 0x0013, 16, 0xF800, 0x07E0, 0x001F, 0},
    {Format::rgb888, 0x0015, 24, 0x00FF0000, 0x0000FF00, 0x000000FF, 0},
    {Format::alphaIntensity, 0x0017, 16, 0, 0, 0, 0},
    {Format::alpha, 0x801B, 8, 0, 0, 0, 0xFF},
    {Format::pvrtc2Opaque, 0x0018, 2, 0, 0, 0, 0},
    {Format::pvrtc2, 0x8018, 2, 0, 0, 0, 1},
    {Format::pvrtc4Opaque, 0x0019, 4, 0, 0, 0, 0},
    {Format::pvrtc4, 0x8019, 4, 0, 0, 0, 1},
};

/// Pixel types of version 1 and 2; PVRTC may be opaque.
struct Type {
    quint32 number;
    quint64 pixelFormat;
};

constexpr Type types[] = {
    {0x00, Format::channels("argb", {4, 4, 4, 4})},
    {0x01, Format::channels("argb", {1, 5, 5, 5})},
    {0x02, Format::rgb565},
    {0x04, Format::rgb888},
    {0x05, Format::bgra8888}, // a little-endian word with alpha at the top
    {0x0C, Format::pvrtc2},
    {0x0D, Format::pvrtc4},
    {0x10, Format::rgba4444},
    {0x11, Format::rgba5551},
    {0x12, Format::rgba8888},
    {0x13, Format::rgb565},
    {0x14, Format::channels("xrgb", {1, 5, 5, 5})},
    {0x15, Format::rgb888},
    {0x16, Format::channels("l", {8})},
    {0x17, Format::alphaIntensity},
    {0x18, Format::pvrtc2},
    {0x19, Format::pvrtc4},
    {0x1A, Format::bgra8888},
    {0x1B, Format::alpha},
    {0x36, Format::etc1},
};

quint32 word(const quint8* bytes, int offset) { return qFromLittleEndian<quint32>(bytes + offset); }

/// Version 1 and 2: the first 44 bytes are the same.
std::optional<PvrTexture> parseOldHeader(const quint8* bytes) {
    const quint32 flags = word(bytes, 16);
    const auto type = std::find_if(std::begin(types), std::end(types),
                                   [&](const Type& row) { return row.number == (flags & TypeMask); });
    if (type == std::end(types))
        return {};
    quint64 format = type->pixelFormat;
    const bool isPvrtc = format == Format::pvrtc2 || format == Format::pvrtc4;
    const bool hasAlpha = (flags & HasAlpha) != 0 || word(bytes, 40) != 0;
    if (isPvrtc && !hasAlpha)
        format = format == Format::pvrtc2 ? Format::pvrtc2Opaque : Format::pvrtc4Opaque;
    // Blocks of PVRTC have one order. Other pixels can be out of line, which nothing reads any more.
    if (!isPvrtc && (flags & Twiddled))
        return {};
    return PvrTexture{format, word(bytes, 8), word(bytes, 4)};
}

std::optional<PvrTexture> parseHeader3(const quint8* bytes) {
    // Unsigned and normalised, in bytes, words of 16 or 32 bits; compressed formats have no such type.
    const quint32 channelType = word(bytes, 20);
    const bool isNormalised = channelType == 0 || channelType == 4 || channelType == 8;
    const quint64 format = qFromLittleEndian<quint64>(bytes + 8);
    if (!isNormalised && format >> 32 != 0)
        return {};
    return PvrTexture{format, word(bytes, 28), word(bytes, 24)};
}

} // namespace

std::optional<PvrTexture> parsePvr2Header(const quint8* bytes) {
    if (word(bytes, 0) != headerSize2 || std::memcmp(bytes + magicOffset, magic2, sizeof magic2) != 0)
        return {};
    return parseOldHeader(bytes);
}

quint32 pvr2DataSize(const quint8* bytes) { return word(bytes, 20); }

std::optional<PvrTexture> readPvrHeader(ByteStream& stream) {
    quint8 bytes[headerSize3];
    if (!stream.read(bytes, headerSize1))
        return {};
    if (word(bytes, 0) == headerSize1)
        return parseOldHeader(bytes);
    if (!stream.read(bytes + headerSize1, headerSize3 - headerSize1))
        return {};
    if (word(bytes, 0) != version3)
        return parsePvr2Header(bytes);
    return stream.skip(word(bytes, 48)) ? parseHeader3(bytes) : std::nullopt;
}

std::optional<QByteArray> pvr2Header(const PvrTexture& texture, bool flipped) {
    const auto layout = std::find_if(std::begin(layouts), std::end(layouts), [&](const Layout& row) {
        return row.pixelFormat == texture.pixelFormat;
    });
    if (layout == std::end(layouts))
        return {};
    const qint64 dataSize = layout->bits * texture.width * texture.height / 8;
    if (dataSize > std::numeric_limits<int>::max() - headerSize2)
        return {};
    const quint32 words[] = {headerSize2,
                             static_cast<quint32>(texture.height),
                             static_cast<quint32>(texture.width),
                             0, // pictures besides the largest
                             layout->flags | (flipped ? quint32{Flipped} : 0),
                             static_cast<quint32>(dataSize),
                             layout->bits,
                             layout->red,
                             layout->green,
                             layout->blue,
                             layout->alpha,
                             qFromLittleEndian<quint32>(magic2),
                             1}; // surfaces
    QByteArray header(headerSize2, Qt::Uninitialized);
    qToLittleEndian<quint32>(words, std::size(words), header.data());
    return header;
}
