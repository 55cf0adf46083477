#include "PngWriter.h"

#include "Error.h"

#include <QtEndian>

#include <png.h>
#include <zlib.h>

namespace {

[[noreturn]] void fail(const QString& text) { throw Error(Error::TextureFile, text); }

void write(QIODevice& device, std::string_view bytes) {
    if (device.write(bytes.data(), static_cast<qint64>(bytes.size())) != static_cast<qint64>(bytes.size()))
        fail(QStringLiteral("Can't write the output file"));
}

std::string number(std::uint32_t value, std::size_t bytes) {
    std::string text(4, '\0');
    qToBigEndian(value, text.data());
    return text.substr(4 - bytes);
}

void writeChunk(QIODevice& device, std::string_view type, std::string_view data) {
    uLong checksum = crc32(0, nullptr, 0);
    for (const std::string_view part : {type, data})
        if (!part.empty()) // the library takes an empty piece for a call to start anew
            checksum =
                crc32(checksum, reinterpret_cast<const Bytef*>(part.data()), static_cast<uInt>(part.size()));
    write(device, number(static_cast<std::uint32_t>(data.size()), 4));
    write(device, type);
    write(device, data);
    write(device, number(static_cast<std::uint32_t>(checksum), 4));
}

std::string_view view(const std::vector<std::uint8_t>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::string header(const PngPicture& picture) {
    std::string data = number(picture.width, 4) + number(picture.height, 4);
    for (const int field : {picture.bitDepth, picture.colorType, PNG_COMPRESSION_TYPE_BASE,
                            PNG_FILTER_TYPE_BASE, picture.interlace})
        data += static_cast<char>(field);
    return data;
}

std::string colorData(const PngPicture& picture, const PngPicture::Color& color) {
    std::string data;
    for (int i = 0; i < (picture.hasColor() ? 3 : 1); ++i)
        data += number(color[static_cast<std::size_t>(i)], 2);
    return data;
}

void writeColorChunks(QIODevice& device, const PngPicture& picture) {
    if (!picture.palette.empty())
        writeChunk(device, "PLTE",
                   {reinterpret_cast<const char*>(picture.palette.data()), 3 * picture.palette.size()});
    if (!picture.alphas.empty())
        writeChunk(device, "tRNS", view(picture.alphas));
    if (picture.transparent)
        writeChunk(device, "tRNS", colorData(picture, *picture.transparent));
    if (picture.background)
        writeChunk(device, "bKGD",
                   picture.hasPalette() ? number((*picture.background)[0], 1)
                                        : colorData(picture, *picture.background));
    std::string histogram;
    for (const std::uint16_t frequency : picture.histogram)
        histogram += number(frequency, 2);
    if (!histogram.empty())
        writeChunk(device, "hIST", histogram);
}

void writeKept(QIODevice& device, const PngPicture& picture, const std::vector<PngChunk>& chunks) {
    const bool suggestsPalette = picture.hasColor() && !picture.hasPalette();
    for (const PngChunk& chunk : chunks) {
        // A signature is void after any change, and only true colour may have a palette to suggest.
        const bool isSuggestion = chunk.type == "PLTE" || chunk.type == "hIST";
        if (chunk.type != "dSIG" && (suggestsPalette || !isSuggestion))
            write(device, chunk.whole);
    }
}

} // namespace

void writePng(QIODevice& device, const PngPicture& picture, const std::vector<std::uint8_t>& idat) {
    if (idat.size() > PNG_UINT_31_MAX)
        fail(QStringLiteral("Can't finalize IDAT"));
    write(device, pngSignature());
    writeChunk(device, "IHDR", header(picture));
    if (!picture.significantBits.empty())
        writeChunk(device, "sBIT", view(picture.significantBits));
    writeKept(device, picture, picture.beforePalette);
    writeColorChunks(device, picture);
    writeKept(device, picture, picture.beforeData);
    writeChunk(device, "IDAT", view(idat));
    writeKept(device, picture, picture.afterData);
    writeChunk(device, "IEND", {});
}

void copyPng(QIODevice& device, const QByteArray& file) {
    write(device, pngSignature());
    for (const PngChunk& chunk : splitPng(file)) {
        if (!chunk.isIntact())
            fail(QStringLiteral("Data error"));
        write(device, chunk.whole);
    }
}
