#include "PngPaletteReduction.h"

#include "Error.h"
#include "PngIndices.h"
#include "PngReductions.h"

#include <png.h>

#include <algorithm>
#include <bitset>

namespace {

using Used = std::bitset<256>;

Used usedEntries(const PngPicture& picture, const std::vector<std::uint8_t>& indices) {
    std::array<bool, 256> seen = {};
    for (const std::uint8_t index : indices)
        seen[index] = true;
    if (picture.background)
        seen[(*picture.background)[0]] = true;
    Used used;
    for (std::size_t i = 0; i < seen.size(); ++i)
        used[i] = seen[i];
    return used;
}

bool repairPalette(PngPicture& picture, const Used& used, const PngOptions& options, PngLog& log) {
    std::size_t needed = used.size();
    while (needed > 0 && !used[needed - 1])
        --needed;
    if (needed <= picture.palette.size())
        return false;
    if (!options.fix)
        throw Error(Error::TextureFile, QStringLiteral("Previous error(s) not fixed"));
    log.print("Warning: Too few colors in palette\n");
    picture.palette.resize(needed);
    picture.histogram.clear();
    return true;
}

int alphaOf(const PngPicture& picture, std::size_t entry) {
    return entry < picture.alphas.size() ? picture.alphas[entry] : 255;
}

bool dropUnusedEntries(PngPicture& picture, const Used& used, std::vector<std::uint8_t>& indices) {
    std::array<std::uint8_t, 256> moved = {};
    std::vector<std::uint8_t> alphas;
    std::size_t kept = 0;
    for (std::size_t entry = 0; entry < picture.palette.size(); ++entry) {
        if (!used[entry])
            continue;
        moved[entry] = static_cast<std::uint8_t>(kept);
        picture.palette[kept] = picture.palette[entry];
        if (!picture.histogram.empty())
            picture.histogram[kept] = picture.histogram[entry];
        alphas.push_back(static_cast<std::uint8_t>(alphaOf(picture, entry)));
        ++kept;
    }
    while (!alphas.empty() && alphas.back() == 255)
        alphas.pop_back();
    const bool changed = kept < picture.palette.size() || alphas != picture.alphas;
    picture.alphas = std::move(alphas);
    if (kept == picture.palette.size())
        return changed;
    picture.palette.resize(kept);
    if (!picture.histogram.empty())
        picture.histogram.resize(kept);
    for (std::uint8_t& index : indices)
        index = moved[index];
    if (picture.background)
        picture.background->fill(moved[(*picture.background)[0]]);
    return changed;
}

/// The grey that doesn't show, if the used entries can be told by their greys: none is half transparent, at
/// most one grey is transparent, and that one is no entry's that shows. Null where they can't.
struct Grays {
    bool possible = false;
    std::optional<std::uint16_t> transparent;
};

Grays graysOf(const PngPicture& picture, const Used& used) {
    Grays grays;
    std::bitset<256> shown;
    for (std::size_t entry = 0; entry < picture.palette.size(); ++entry) {
        if (!used[entry])
            continue;
        const auto& [red, green, blue] = picture.palette[entry];
        const int alpha = alphaOf(picture, entry);
        if (red != green || green != blue || (alpha != 0 && alpha != 255))
            return {};
        if (alpha == 255)
            shown.set(red);
        else if (grays.transparent && *grays.transparent != red)
            return {};
        else
            grays.transparent = red;
    }
    grays.possible = !grays.transparent || !shown[*grays.transparent];
    return grays;
}

void convertToGray(PngPicture& picture, const Grays& grays, std::vector<std::uint8_t> indices) {
    for (std::uint8_t& index : indices)
        index = picture.palette[index][0];
    if (picture.background)
        picture.background->fill(picture.palette[(*picture.background)[0]][0]);
    if (grays.transparent)
        picture.transparent = PngPicture::Color{*grays.transparent, *grays.transparent, *grays.transparent};
    if (!picture.significantBits.empty())
        picture.significantBits = {
            *std::max_element(picture.significantBits.begin(), picture.significantBits.end())};
    picture.palette.clear();
    picture.alphas.clear();
    picture.histogram.clear();
    picture.colorType = PNG_COLOR_TYPE_GRAY;
    packIndices(picture, std::move(indices), 8);
}

} // namespace

bool reducePalette(PngPicture& picture, unsigned mask, const PngOptions& options, PngLog& log) {
    std::vector<std::uint8_t> indices = unpackIndices(picture);
    Used used = usedEntries(picture, indices);
    bool changed = repairPalette(picture, used, options, log);
    if (mask & ReducePaletteEntries) {
        changed |= dropUnusedEntries(picture, used, indices);
        used.set();
    }
    const int bits = std::min(picture.bitDepth, indexBits(picture.palette.size()));
    const bool fewerBits = (mask & Reduce8To421) && bits < picture.bitDepth;
    if ((mask & ReducePaletteToGray) && picture.bitDepth == 8 && !fewerBits)
        if (const Grays grays = graysOf(picture, used); grays.possible) {
            convertToGray(picture, grays, std::move(indices));
            return true;
        }
    if (changed || fewerBits)
        packIndices(picture, std::move(indices), fewerBits ? bits : picture.bitDepth);
    return changed || fewerBits;
}
