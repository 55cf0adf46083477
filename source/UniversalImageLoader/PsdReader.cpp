#include "PsdReader.h"

#include "ByteStream.h"
#include "ImageLimits.h"
#include "PluginImage.h"
#include "RunLengthReader.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

enum Compression { Raw = 0, PackBits = 1 };

constexpr int headerSize = 26;
constexpr int channelShifts[] = {16, 8, 0, 24}; ///< red, green, blue, alpha in a QRgb

struct Header {
    int channels;
    qint64 width;
    qint64 height;

    int planes() const { return std::min(channels, 4); } ///< that make the picture
};

bool readHeader(ByteStream& stream, Header& header) {
    quint8 bytes[headerSize];
    if (!stream.read(bytes, headerSize) || std::memcmp(bytes, "8BPS", 4) != 0) {
        qDebug("invalid header!");
        return false;
    }
    const auto word = [&](int offset) { return uint{qFromBigEndian<quint16>(bytes + offset)}; };
    constexpr uint rgbMode = 3;
    const uint version = word(4);
    if (version != 1)
        qDebug("*** bad version number %u", version);
    const uint channels = word(12);
    if (version != 1 || channels < 1 || channels > 16 || word(22) != 8 || word(24) != rgbMode) {
        qDebug("unsupported file!");
        return false;
    }
    header = {static_cast<int>(channels), qFromBigEndian<quint32>(bytes + 18),
              qFromBigEndian<quint32>(bytes + 14)};
    return true;
}

/// Colour mode data, image resources, layers and masks.
bool skipSections(ByteStream& stream) {
    for (int section = 0; section < 3; ++section) {
        quint8 length[4];
        if (!stream.read(length, 4) || !stream.skip(qFromBigEndian<quint32>(length)))
            return false;
    }
    return true;
}

void orInto(QRgb* row, const quint8* samples, int width, int shift) {
    for (int x = 0; x < width; ++x)
        row[x] |= QRgb{samples[x]} << shift;
}

bool readPlane(ByteStream& stream, int compression, QImage& image, int shift) {
    RunLengthReader packets(stream, 1, RunLengthReader::packBitsPacket);
    std::vector<quint8> samples(static_cast<std::size_t>(image.width()));
    for (int y = 0; y < image.height(); ++y) {
        const bool complete = compression == Raw ? stream.read(samples.data(), image.width())
                                                 : packets.read(samples.data(), image.width());
        if (!complete)
            return false;
        orInto(PluginImage::row(image, y), samples.data(), image.width(), shift);
    }
    return packets.atPacketEnd();
}

QImage readPlanes(ByteStream& stream, const Header& header, int compression) {
    if (!ImageLimits::accept(header.width, header.height))
        return {};
    const qint64 pixels = header.width * header.height;
    // A run gives at most 128 samples for two bytes.
    const qint64 planeSize = compression == Raw ? pixels : (pixels + 127) / 128 * 2;
    if (!stream.mayHold(header.planes() * planeSize))
        return {};
    const bool alpha = header.channels >= 4;
    QImage image = PluginImage::allocate(header.width, header.height,
                                         alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (image.isNull())
        return {};
    image.fill(alpha ? 0 : qRgb(0, 0, 0));
    for (int plane = 0; plane < header.planes(); ++plane)
        if (!readPlane(stream, compression, image, channelShifts[plane]))
            return {};
    return image;
}

/// The colour that gives `color` over white with that alpha. A colour that no picture gives wraps around.
int withoutWhite(int color, int alpha) { return ((color + alpha - 255) * 255 / alpha) & 0xFF; }

void removeWhite(QImage& image) {
    for (int y = 0; y < image.height(); ++y) {
        QRgb* row = PluginImage::row(image, y);
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = row[x];
            const int alpha = qAlpha(pixel);
            if (alpha == 0)
                row[x] = 0;
            else if (alpha < 255)
                row[x] = qRgba(withoutWhite(qRed(pixel), alpha), withoutWhite(qGreen(pixel), alpha),
                               withoutWhite(qBlue(pixel), alpha), alpha);
        }
    }
}

} // namespace

QImage readPsd(QIODevice& device) {
    ByteStream stream(device);
    Header header;
    quint8 bytes[2];
    if (!readHeader(stream, header) || !skipSections(stream) || !stream.read(bytes, 2))
        return {};
    const int compression = qFromBigEndian<quint16>(bytes);
    // Before the packed planes stands the packed length of each row, two bytes a row.
    const qint64 lengths = compression == PackBits ? 2 * header.channels * header.height : 0;
    if ((compression != Raw && compression != PackBits) || !stream.skip(lengths))
        return {};
    QImage image = readPlanes(stream, header, compression);
    removeWhite(image);
    return image;
}
