#include "PvrWriter.h"

#include "PluginImage.h"
#include "PvrChannels.h"
#include "PvrHeader.h"
#include "PvrPixelFormat.h"
#include "PvrtcEncoder.h"

#include <zlib.h>

#include <new>

namespace {

namespace Format = pvrPixelFormat;

QByteArray packChannels(const QImage& pixels, const PvrChannels& channels) {
    const int pitch = pixels.width() * channels.bytesPerPixel();
    QByteArray bytes(pitch * pixels.height(), Qt::Uninitialized);
    for (int y = 0; y < pixels.height(); ++y)
        channels.pack(PluginImage::row(pixels, y), pixels.width(),
                      reinterpret_cast<quint8*>(bytes.data()) + qint64{pitch} * y);
    return bytes;
}

/// Both kinds of a width are encoded alike, with alpha; only the header tells them apart.
QByteArray encodePvrtc(const QImage& pixels, int bits) {
    const QByteArray rgba = packChannels(pixels, *PvrChannels::of(Format::rgba8888));
    const std::vector<quint8> blocks =
        pvrtcEncode(reinterpret_cast<const quint8*>(rgba.constData()), pixels.width(), pixels.height(), bits);
    return QByteArray(reinterpret_cast<const char*>(blocks.data()), static_cast<int>(blocks.size()));
}

QByteArray encode(const QImage& image, quint64 format) {
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
    if (format <= Format::pvrtc4)
        return encodePvrtc(pixels, format <= Format::pvrtc2 ? 2 : 4);
    const std::optional<PvrChannels> channels = PvrChannels::of(format);
    return channels ? packChannels(pixels, *channels) : QByteArray();
}

} // namespace

QByteArray pvr2Data(const QImage& image, const QHash<QString, QVariant>& options) {
    const quint64 format =
        options.value(QStringLiteral("pixelformat"), QVariant::fromValue(Format::rgba8888)).toULongLong();
    const bool flipped = options.value(QStringLiteral("flipped")).toBool();
    const std::optional<QByteArray> header = pvr2Header({format, image.width(), image.height()}, flipped);
    if (image.isNull() || !header)
        return {};
    const QByteArray pixels = encode(flipped ? image.mirrored() : image, format);
    const auto size = static_cast<int>(pvr2DataSize(reinterpret_cast<const quint8*>(header->constData())));
    if (pixels.isEmpty() || pixels.size() < size) {
        qDebug("Failed to transcode data");
        return {};
    }
    return *header + pixels.left(size);
}

QByteArray cczContainer(const QByteArray& file) {
    // Type 0 (zlib), version 2, four bytes of reserve; qCompress() begins with the size.
    static constexpr char header[] = {'C', 'C', 'Z', '!', 0, 0, 0, 2, 0, 0, 0, 0};
    return QByteArray(header, sizeof header) + qCompress(file);
}

QByteArray gzipStream(const QByteArray& file) {
    constexpr int gzipWindow = 16 + MAX_WBITS;
    constexpr int defaultMemory = 8;
    z_stream stream = {};
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, gzipWindow, defaultMemory,
                     Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
    QByteArray packed(static_cast<int>(deflateBound(&stream, static_cast<uLong>(file.size()))),
                      Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(file.data()));
    stream.avail_in = static_cast<uInt>(file.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.truncate(static_cast<int>(stream.total_out));
    deflateEnd(&stream);
    return packed;
}
