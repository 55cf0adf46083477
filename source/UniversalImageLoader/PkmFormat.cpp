#include "PkmFormat.h"

#include "Etc1Encoder.h"
#include "Etc1Picture.h"
#include "PluginImage.h"

#include <QtEndian>

#include <cstring>
#include <vector>

namespace {

constexpr int headerSize = 16;
constexpr char magic[] = {'P', 'K', 'M', ' ', '1', '0', 0, 0}; ///< with the format: ETC1 without mipmaps

int wholeBlocks(int side) { return (side + 3) / 4 * 4; }

bool fits(int encoded, int side) { return encoded >= side && encoded < side + 4; }

QByteArray header(const QSize& size) {
    QByteArray bytes(magic, sizeof magic);
    for (const int number :
         {wholeBlocks(size.width()), wholeBlocks(size.height()), size.width(), size.height()})
        bytes.append(static_cast<char>(number >> 8)).append(static_cast<char>(number));
    return bytes;
}

} // namespace

QImage readPkm(QIODevice& device) {
    ByteStream stream(device);
    quint8 bytes[headerSize];
    if (!stream.read(bytes, headerSize) || std::memcmp(bytes, magic, sizeof magic) != 0)
        return {};
    const auto number = [&](int offset) { return int{qFromBigEndian<quint16>(bytes + offset)}; };
    const int width = number(12);
    const int height = number(14);
    if (!fits(number(8), width) || !fits(number(10), height))
        return {};
    return readEtc1Picture(stream, width, height, wholeBlocks(number(8)) / 4, true);
}

bool writePkm(QIODevice& device, const QImage& image) {
    constexpr int maximumSide = 0xFFFC;
    if (image.isNull() || image.width() > maximumSide || image.height() > maximumSide)
        return false;
    const QImage colors = image.convertToFormat(QImage::Format_RGB888);
    // The encoder takes rows without gaps.
    const std::size_t pitch = 3 * static_cast<std::size_t>(image.width());
    std::vector<quint8> rows(pitch * static_cast<std::size_t>(image.height()));
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(rows.data() + static_cast<std::size_t>(y) * pitch, colors.constScanLine(y), pitch);
    QByteArray blocks(static_cast<int>(etc1DataSize(image.width(), image.height())), Qt::Uninitialized);
    return etc1EncodeImage(rows.data(), image.width(), image.height(), 3, pitch,
                           reinterpret_cast<quint8*>(blocks.data())) == 0 &&
           PluginImage::writeAll(device, header(image.size())) && PluginImage::writeAll(device, blocks);
}
