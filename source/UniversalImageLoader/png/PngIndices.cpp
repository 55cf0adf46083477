#include "PngIndices.h"

std::vector<std::uint8_t> unpackIndices(const PngPicture& picture) {
    if (picture.bitDepth == 8)
        return picture.pixels;
    const auto bits = static_cast<unsigned>(picture.bitDepth);
    const unsigned perByte = 8 / bits;
    std::vector<std::uint8_t> indices;
    indices.reserve(std::size_t{picture.width} * picture.height);
    for (std::size_t y = 0; y < picture.height; ++y) {
        const std::uint8_t* row = picture.pixels.data() + y * picture.rowBytes();
        for (unsigned x = 0; x < picture.width; ++x) {
            const unsigned shift = 8 - bits - x % perByte * bits;
            indices.push_back(static_cast<std::uint8_t>(row[x / perByte] >> shift & ((1U << bits) - 1)));
        }
    }
    return indices;
}

void packIndices(PngPicture& picture, std::vector<std::uint8_t> indices, int bitDepth) {
    picture.bitDepth = bitDepth;
    if (bitDepth == 8) {
        picture.pixels = std::move(indices);
        return;
    }
    const auto bits = static_cast<unsigned>(bitDepth);
    const unsigned perByte = 8 / bits;
    picture.pixels.assign(picture.rowBytes() * picture.height, 0);
    const std::uint8_t* index = indices.data();
    for (std::size_t y = 0; y < picture.height; ++y) {
        std::uint8_t* row = picture.pixels.data() + y * picture.rowBytes();
        for (unsigned x = 0; x < picture.width; ++x)
            row[x / perByte] |= static_cast<std::uint8_t>(*index++ << (8 - bits - x % perByte * bits));
    }
}

int indexBits(std::size_t colors) {
    if (colors <= 2)
        return 1;
    if (colors <= 4)
        return 2;
    return colors <= 16 ? 4 : 8;
}
