#include "PngReader.h"

#include "Error.h"
#include "PngDecoder.h"

#include <QtEndian>

#include <png.h>

#include <algorithm>

namespace {

[[noreturn]] void refuse() { throw Error(Error::TextureFile, QStringLiteral("Previous error(s) not fixed")); }

std::uint16_t word(std::string_view data, std::size_t index) {
    return qFromBigEndian<quint16>(data.data() + 2 * index);
}

/// A colour as bKGD and tRNS hold it: one sample of a grey picture, three of another.
PngPicture::Color colorOf(const PngPicture& picture, std::string_view data) {
    if (data.size() != (picture.hasColor() ? 6 : 2))
        refuse();
    const std::size_t step = picture.hasColor() ? 1 : 0;
    const PngPicture::Color color = {word(data, 0), word(data, step), word(data, 2 * step)};
    if (std::any_of(color.begin(), color.end(), [&](int sample) { return sample >> picture.bitDepth; }))
        refuse();
    return color;
}

void readPalette(PngPicture& picture, std::string_view data) {
    if (data.size() % 3 != 0 || data.size() > 3 * 256)
        refuse();
    for (std::size_t i = 0; i < data.size(); i += 3)
        picture.palette.push_back({static_cast<std::uint8_t>(data[i]), static_cast<std::uint8_t>(data[i + 1]),
                                   static_cast<std::uint8_t>(data[i + 2])});
}

void readBackground(PngPicture& picture, std::string_view data) {
    if (!picture.hasPalette()) {
        picture.background = colorOf(picture, data);
    } else {
        if (data.size() != 1)
            refuse();
        const auto index = static_cast<std::uint8_t>(data[0]);
        picture.background = {index, index, index};
    }
}

void readTransparency(PngPicture& picture, std::string_view data) {
    if (picture.hasAlpha())
        refuse();
    if (picture.hasPalette())
        picture.alphas.assign(data.begin(), data.end());
    else
        picture.transparent = colorOf(picture, data);
}

void readSignificantBits(PngPicture& picture, std::string_view data) {
    if (data.size() != static_cast<std::size_t>(picture.hasPalette() ? 3 : picture.channels()))
        refuse();
    picture.significantBits.assign(data.begin(), data.end());
}

void readHistogram(PngPicture& picture, std::string_view data) {
    if (data.size() != 2 * picture.palette.size())
        refuse();
    for (std::size_t i = 0; i < picture.palette.size(); ++i)
        picture.histogram.push_back(word(data, i));
}

/// The chunks whose content follows the pixels. False for any other.
bool readColorChunk(PngPicture& picture, const PngChunk& chunk) {
    if (chunk.type == "bKGD")
        readBackground(picture, chunk.data);
    else if (chunk.type == "tRNS")
        readTransparency(picture, chunk.data);
    else if (chunk.type == "sBIT")
        readSignificantBits(picture, chunk.data);
    else if (chunk.type == "hIST" && picture.hasPalette())
        readHistogram(picture, chunk.data);
    else
        return false;
    return true;
}

void readChunk(PngPicture& picture, const PngChunk& chunk, PngInput& input) {
    if (chunk.type == "IDAT") {
        input.idatSize += chunk.data.size();
        ++input.idatChunks;
    } else if (chunk.type == "PLTE") {
        // A palette of a true colour picture is a mere suggestion.
        if (picture.hasPalette())
            readPalette(picture, chunk.data);
        else
            picture.beforePalette.push_back(chunk);
    } else if (chunk.isAncillary()) {
        if (!chunk.isIntact())
            refuse();
        input.isSigned |= chunk.type == "dSIG";
        input.isAnimated |= chunk.type == "acTL";
        if (readColorChunk(picture, chunk))
            return;
        if (input.idatChunks > 0)
            picture.afterData.push_back(chunk);
        else
            (picture.palette.empty() ? picture.beforePalette : picture.beforeData).push_back(chunk);
    }
}

} // namespace

PngPicture readPng(const QByteArray& file, const PngOptions& options, PngLog& log, PngInput& input) {
    const std::vector<PngChunk> chunks = splitPng(file);
    PngPicture picture = PngDecoder(file, log).decode();
    input.fileSize = static_cast<std::size_t>(file.size());
    for (const PngChunk& chunk : chunks)
        readChunk(picture, chunk, input);
    input.colorChunkBytes = picture.colorChunkBytes();
    if (picture.hasPalette() && picture.alphas.size() > picture.palette.size()) {
        if (!options.fix)
            refuse();
        log.print("Warning: Too many alpha values in tRNS\n");
        picture.alphas.resize(picture.palette.size());
    }
    return picture;
}
