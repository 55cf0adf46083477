#include "Etc1Picture.h"

#include "Etc1Decoder.h"
#include "PluginImage.h"

#include <algorithm>
#include <vector>

namespace {

constexpr int blockSide = 4;
constexpr int blockSize = 8; ///< bytes

} // namespace

QImage readEtc1Picture(ByteStream& stream, int width, int height, int blocksAcross, bool shortIsZero) {
    const int blocksDown = (height + blockSide - 1) / blockSide;
    if (!shortIsZero && !stream.mayHold(qint64{blocksAcross} * blocksDown * blockSize))
        return {};
    QImage image = PluginImage::allocate(width, height, QImage::Format_RGB32);
    if (image.isNull())
        return {};
    std::vector<quint8> blocks(static_cast<std::size_t>(blocksAcross) * blockSize);
    const std::size_t pitch = std::size_t{3} * blockSide * static_cast<std::size_t>(blocksAcross);
    std::vector<quint8> colors(pitch * blockSide);
    for (int top = 0; top < height; top += blockSide) {
        const auto size = static_cast<qint64>(blocks.size());
        const qint64 read = stream.readSome(blocks.data(), size);
        if (read < size && !shortIsZero)
            return {};
        std::fill(blocks.begin() + read, blocks.end(), quint8{0});
        etc1DecodeImage(blocks.data(), blocksAcross * blockSide, blockSide, colors.data(), pitch);
        for (int y = top; y < std::min(top + blockSide, height); ++y) {
            const quint8* from = colors.data() + static_cast<std::size_t>(y - top) * pitch;
            QRgb* to = PluginImage::row(image, y);
            for (int x = 0; x < width; ++x, from += 3)
                to[x] = qRgb(from[0], from[1], from[2]);
        }
    }
    return image;
}
