#include "PngSampleReduction.h"

#include "PngReductions.h"

#include <png.h>

#include <algorithm>
#include <cstring>

namespace {

std::size_t bytesPerPixel(const PngPicture& picture) {
    return static_cast<std::size_t>(picture.bitsPerPixel()) / 8;
}

/// Whether a test holds for the bytes of every pixel.
template <class Test>
bool everyPixel(const PngPicture& picture, Test test) {
    const std::size_t step = bytesPerPixel(picture);
    const std::uint8_t* pixel = picture.pixels.data();
    const std::uint8_t* end = pixel + picture.pixels.size();
    for (; pixel != end; pixel += step)
        if (!test(pixel))
            return false;
    return true;
}

bool isDoubled(int sample) { return sample % 257 == 0; }

bool fitsIn8Bits(const PngPicture& picture) {
    if (picture.bitDepth != 16)
        return false;
    if (picture.background && !std::all_of(picture.background->begin(), picture.background->end(), isDoubled))
        return false;
    const std::size_t step = bytesPerPixel(picture);
    return everyPixel(picture, [step](const std::uint8_t* pixel) {
        for (std::size_t i = 0; i < step; i += 2)
            if (pixel[i] != pixel[i + 1])
                return false;
        return true;
    });
}

bool isGray(const PngPicture::Color& color) { return color[0] == color[1] && color[1] == color[2]; }

bool isGrayPicture(const PngPicture& picture) {
    if (!picture.hasColor() || (picture.background && !isGray(*picture.background)))
        return false;
    if (picture.bitDepth == 8)
        return everyPixel(picture, [](const std::uint8_t* p) { return p[0] == p[1] && p[1] == p[2]; });
    return everyPixel(picture, [](const std::uint8_t* p) {
        return p[0] == p[2] && p[1] == p[3] && p[2] == p[4] && p[3] == p[5];
    });
}

bool isOpaque(const PngPicture& picture) {
    if (!picture.hasAlpha())
        return false;
    const std::size_t last = bytesPerPixel(picture) - 1;
    if (picture.bitDepth == 8)
        return everyPixel(picture, [last](const std::uint8_t* pixel) { return pixel[last] == 255; });
    return everyPixel(
        picture, [last](const std::uint8_t* pixel) { return pixel[last] == 255 && pixel[last - 1] == 255; });
}

struct Change {
    bool to8Bits;
    bool toGray;
    bool stripAlpha;
};

/// The bytes of a pixel that stay.
std::vector<std::size_t> bytesKept(const PngPicture& picture, const Change& change) {
    const std::size_t sample = static_cast<std::size_t>(picture.bitDepth) / 8;
    const auto channels = static_cast<std::size_t>(picture.channels());
    const std::size_t colors = channels - (picture.hasAlpha() ? 1 : 0);
    std::vector<std::size_t> kept;
    for (std::size_t channel = 0; channel < channels; ++channel) {
        const bool isAlpha = channel >= colors;
        if (isAlpha ? change.stripAlpha : change.toGray && channel > 0)
            continue;
        kept.push_back(channel * sample);
        if (sample == 2 && !change.to8Bits)
            kept.push_back(channel * sample + 1);
    }
    return kept;
}

void repack(PngPicture& picture, const std::vector<std::size_t>& kept) {
    const std::size_t step = bytesPerPixel(picture);
    const std::uint8_t* from = picture.pixels.data();
    const std::uint8_t* end = from + picture.pixels.size();
    std::uint8_t* to = picture.pixels.data();
    for (; from != end; from += step)
        for (const std::size_t byte : kept)
            *to++ = from[byte];
    picture.pixels.resize(static_cast<std::size_t>(to - picture.pixels.data()));
}

void reduceSignificantBits(PngPicture& picture, const Change& change) {
    std::vector<std::uint8_t>& bits = picture.significantBits;
    if (bits.empty())
        return;
    if (change.stripAlpha)
        bits.pop_back();
    if (change.toGray) {
        bits[0] = std::max({bits[0], bits[1], bits[2]});
        bits.erase(bits.begin() + 1, bits.begin() + 3);
    }
    if (change.to8Bits)
        for (std::uint8_t& value : bits)
            value = std::min<std::uint8_t>(value, 8);
}

void reduceColors(PngPicture& picture, const Change& change) {
    std::optional<PngPicture::Color>& key = picture.transparent;
    // No pixel has such a colour any more.
    if (key && ((change.to8Bits && !std::all_of(key->begin(), key->end(), isDoubled)) ||
                (change.toGray && !isGray(*key))))
        key.reset();
    if (change.to8Bits)
        for (auto* color : {&picture.background, &key})
            if (*color)
                for (std::uint16_t& sample : **color)
                    sample &= 0xFF;
}

} // namespace

bool reduceSamples(PngPicture& picture, unsigned mask) {
    if (picture.bitDepth < 8 || picture.hasPalette())
        return false;
    Change change;
    change.to8Bits = (mask & Reduce16To8) && fitsIn8Bits(picture);
    change.toGray = (mask & ReduceRgbToGray) && isGrayPicture(picture);
    change.stripAlpha = (mask & ReduceStripAlpha) && isOpaque(picture);
    if (!change.to8Bits && !change.toGray && !change.stripAlpha)
        return false;
    repack(picture, bytesKept(picture, change));
    reduceSignificantBits(picture, change);
    reduceColors(picture, change);
    if (change.to8Bits)
        picture.bitDepth = 8;
    if (change.toGray)
        picture.colorType &= ~PNG_COLOR_MASK_COLOR;
    if (change.stripAlpha)
        picture.colorType &= ~PNG_COLOR_MASK_ALPHA;
    return true;
}
