#include "TgaFormat.h"

#include "ByteStream.h"
#include "PluginImage.h"
#include "RunLengthReader.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <vector>

namespace {

enum ImageType { Mapped = 1, TrueColor = 2, Grey = 3, RunLength = 8 };
enum Descriptor { RightToLeft = 0x10, TopDown = 0x20 };

constexpr int headerSize = 18;

struct Header {
    int idLength;
    int mapType;
    int type; ///< of ImageType, without RunLength
    bool packed;
    int mapFirst; ///< index of the first colour that the file holds
    int mapLength;
    int mapEntryBits;
    int width;
    int height;
    int pixelBits;
    int descriptor;

    int pixelSize() const { return pixelBits / 8; }
    qint64 pixels() const { return qint64{width} * height; }
};

using Palette = std::array<QRgb, 256>;

bool readHeader(ByteStream& stream, Header& header) {
    quint8 bytes[headerSize];
    if (!stream.read(bytes, headerSize))
        return false;
    const auto word = [&](int offset) { return int{qFromLittleEndian<quint16>(bytes + offset)}; };
    header = {bytes[0],
              bytes[1],
              bytes[2] & ~RunLength,
              (bytes[2] & RunLength) != 0,
              word(3),
              word(5),
              bytes[7],
              word(12),
              word(14),
              bytes[16],
              bytes[17]};
    return true;
}

bool isSupported(const Header& header) {
    switch (header.type) {
    case Mapped:
        if (header.mapType == 1 && header.mapEntryBits == 24 && header.mapLength <= 256)
            return header.pixelBits == 8;
        qDebug("*** loadTGA: Error, only 24bit paletted images are supported.");
        return false;
    case TrueColor:
        return header.pixelBits == 16 || header.pixelBits == 24 || header.pixelBits == 32;
    case Grey:
        return header.pixelBits == 8;
    default:
        qDebug("*** loadTGA: Error, unsupported image type.");
        return false;
    }
}

/// What stands for each byte of a pixel. Colours that a map doesn't hold are black.
bool readPalette(ByteStream& stream, const Header& header, Palette& palette) {
    palette.fill(qRgb(0, 0, 0));
    if (header.type == Grey)
        for (int i = 0; i < 256; ++i)
            palette[static_cast<std::size_t>(i)] = qRgb(i, i, i);
    // A picture that needs no map may have one all the same.
    const int size = header.mapType == 1 ? header.mapLength * ((header.mapEntryBits + 7) / 8) : 0;
    if (header.type != Mapped)
        return stream.skip(size);
    std::vector<quint8> map(static_cast<std::size_t>(size));
    if (!stream.read(map.data(), size))
        return false;
    for (int i = 0; i < header.mapLength && header.mapFirst + i < 256; ++i) {
        const quint8* entry = map.data() + 3 * i;
        palette[static_cast<std::size_t>(header.mapFirst + i)] = qRgb(entry[2], entry[1], entry[0]);
    }
    return true;
}

QRgb fiveBits(quint16 word) {
    const auto widen = [](int value) { return value << 3 | value >> 2; };
    return qRgb(widen(word >> 10 & 31), widen(word >> 5 & 31), widen(word & 31));
}

void convertRow(const quint8* from, int pixelSize, const Palette& palette, int width, QRgb* to) {
    switch (pixelSize) {
    case 1:
        std::transform(from, from + width, to, [&](quint8 index) { return palette[index]; });
        break;
    case 2:
        for (int x = 0; x < width; ++x)
            to[x] = fiveBits(qFromLittleEndian<quint16>(from + 2 * x));
        break;
    case 3:
        for (int x = 0; x < width; ++x)
            to[x] = qRgb(from[3 * x + 2], from[3 * x + 1], from[3 * x]);
        break;
    default:
        qFromLittleEndian<quint32>(from, width, to);
    }
}

bool readPixels(ByteStream& stream, const Header& header, const Palette& palette, QImage& image) {
    const int width = header.width;
    std::vector<quint8> bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(header.pixelSize()));
    RunLengthReader packets(stream, header.pixelSize(), RunLengthReader::targaPacket);
    for (int i = 0; i < header.height; ++i) {
        const bool complete = header.packed ? packets.read(bytes.data(), width)
                                            : stream.read(bytes.data(), static_cast<qint64>(bytes.size()));
        if (!complete)
            return false;
        const bool topDown = (header.descriptor & TopDown) != 0;
        QRgb* row = PluginImage::row(image, topDown ? i : header.height - 1 - i);
        convertRow(bytes.data(), header.pixelSize(), palette, width, row);
        if (header.descriptor & RightToLeft)
            std::reverse(row, row + width);
    }
    return packets.atPacketEnd();
}

} // namespace

QImage readTga(QIODevice& device) {
    ByteStream stream(device);
    Header header;
    Palette palette;
    if (!readHeader(stream, header) || !isSupported(header) || !stream.skip(header.idLength) ||
        !readPalette(stream, header, palette))
        return {};
    // A packet holds at most 128 pixels.
    const qint64 leastSize = header.packed ? (header.pixels() + 127) / 128 * (1 + header.pixelSize())
                                           : header.pixels() * header.pixelSize();
    if (!stream.mayHold(leastSize))
        return {};
    QImage image = PluginImage::allocate(
        header.width, header.height, header.pixelBits == 32 ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    return !image.isNull() && readPixels(stream, header, palette, image) ? image : QImage();
}

bool writeTga(QIODevice& device, const QImage& image) {
    constexpr int maximumSide = 0xFFFF;
    if (image.isNull() || image.width() > maximumSide || image.height() > maximumSide)
        return false;
    const QImage pixels = PluginImage::toPlugin(image);
    const bool alpha = pixels.hasAlphaChannel();
    QByteArray header(headerSize, '\0');
    header[2] = TrueColor;
    qToLittleEndian(static_cast<quint16>(image.width()), header.data() + 12);
    qToLittleEndian(static_cast<quint16>(image.height()), header.data() + 14);
    header[16] = alpha ? 32 : 24;
    // Fifteen bits of alpha: a value of its own kind, which readers of these files know.
    header[17] = static_cast<char>(TopDown | (alpha ? 0x0F : 0));
    if (!PluginImage::writeAll(device, header))
        return false;
    QByteArray bytes(image.width() * (alpha ? 4 : 3), Qt::Uninitialized);
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* row = PluginImage::row(pixels, y);
        char* to = bytes.data();
        for (int x = 0; x < image.width(); ++x) {
            *to++ = static_cast<char>(qBlue(row[x]));
            *to++ = static_cast<char>(qGreen(row[x]));
            *to++ = static_cast<char>(qRed(row[x]));
            if (alpha)
                *to++ = static_cast<char>(qAlpha(row[x]));
        }
        if (!PluginImage::writeAll(device, bytes))
            return false;
    }
    return true;
}
