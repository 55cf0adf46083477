#include "PngPaletteConversion.h"

#include "PngIndices.h"
#include "PngReductions.h"

#include <png.h>

#include <algorithm>

namespace {

/// Alpha, red, green, blue from the high byte on, so that the order of numbers is the order of entries.
using Entry = std::uint32_t;

Entry entryOf(unsigned red, unsigned green, unsigned blue, unsigned alpha) {
    return alpha << 24 | red << 16 | green << 8 | blue;
}

unsigned alphaOf(Entry entry) { return entry >> 24; }

/// A hash table of at most 256 colours.
class ColorTable {
public:
    /// False if there is no room for a new colour.
    bool insert(Entry entry) {
        Slot& slot = find(entry);
        if (slot.taken)
            return true;
        if (m_entries.size() == 256)
            return false;
        slot = {entry, true, 0};
        m_entries.push_back(entry);
        return true;
    }

    void sort() {
        std::sort(m_entries.begin(), m_entries.end());
        for (std::size_t i = 0; i < m_entries.size(); ++i)
            find(m_entries[i]).index = static_cast<std::uint8_t>(i);
    }

    std::uint8_t indexOf(Entry entry) { return find(entry).index; }
    const std::vector<Entry>& entries() const { return m_entries; }

private:
    struct Slot {
        Entry entry = 0;
        bool taken = false;
        std::uint8_t index = 0;
    };

    Slot& find(Entry entry) {
        std::size_t place = entry * 0x9E3779B1U >> 22;
        while (m_slots[place].taken && m_slots[place].entry != entry)
            place = (place + 1) % m_slots.size();
        return m_slots[place];
    }

    std::array<Slot, 1024> m_slots;
    std::vector<Entry> m_entries;
};

/// Calls `visit` with the entry of every pixel until it says false, which is then the result.
template <int channels, class Visit>
bool visitPixels(const PngPicture& picture, Visit visit) {
    constexpr int colors = channels < 3 ? 1 : 3;
    constexpr Entry opaque = 0xFF000000U;
    Entry key = 0; // no opaque entry
    if (picture.transparent) {
        const auto& [red, green, blue] = *picture.transparent;
        key = entryOf(red, green, blue, 255);
    }
    const std::uint8_t* pixel = picture.pixels.data();
    const std::uint8_t* end = pixel + picture.pixels.size();
    for (; pixel != end; pixel += channels) {
        Entry entry = entryOf(pixel[0], pixel[colors / 2], pixel[colors - 1],
                              channels > colors ? pixel[channels - 1] : 255);
        if (entry == key)
            entry &= ~opaque;
        if (!visit(entry))
            return false;
    }
    return true;
}

template <class Visit>
bool visitPixels(const PngPicture& picture, Visit visit) {
    switch (picture.channels()) {
    case 1:
        return visitPixels<1>(picture, visit);
    case 2:
        return visitPixels<2>(picture, visit);
    case 3:
        return visitPixels<3>(picture, visit);
    default:
        return visitPixels<4>(picture, visit);
    }
}

Entry backgroundEntry(const PngPicture& picture) {
    const auto& [red, green, blue] = *picture.background;
    return entryOf(red, green, blue, 255);
}

bool collectColors(const PngPicture& picture, ColorTable& table) {
    if (picture.background)
        table.insert(backgroundEntry(picture));
    // Neighbours are mostly equal.
    bool first = true;
    Entry last = 0;
    return visitPixels(picture, [&](Entry entry) {
        if (!first && entry == last)
            return true;
        first = false;
        last = entry;
        return table.insert(entry);
    });
}

/// Whether the palette costs less than its indices save.
bool pays(const PngPicture& picture, std::size_t colors, std::size_t alphas, int bits) {
    const int saved = picture.bitsPerPixel() - bits;
    const std::size_t pixels = std::size_t{picture.width} * picture.height;
    return saved > 0 && (3 * colors + alphas) * 8 < static_cast<std::size_t>(saved) * pixels;
}

std::vector<std::uint8_t> indicesOf(const PngPicture& picture, ColorTable& table) {
    std::vector<std::uint8_t> indices(std::size_t{picture.width} * picture.height);
    std::uint8_t* index = indices.data();
    Entry last = table.entries().front();
    std::uint8_t lastIndex = 0;
    visitPixels(picture, [&](Entry entry) {
        if (entry != last) {
            last = entry;
            lastIndex = table.indexOf(entry);
        }
        *index++ = lastIndex;
        return true;
    });
    return indices;
}

void convertSignificantBits(PngPicture& picture) {
    std::vector<std::uint8_t>& bits = picture.significantBits;
    if (bits.empty())
        return;
    if (picture.hasAlpha())
        bits.pop_back();
    bits.resize(3, bits[0]);
}

} // namespace

bool convertToPalette(PngPicture& picture, unsigned mask) {
    if (picture.hasPalette() || picture.bitDepth != 8 ||
        !(mask & (picture.hasColor() ? ReduceRgbToPalette : ReduceGrayToPalette)))
        return false;
    ColorTable table;
    if (!collectColors(picture, table))
        return false;
    table.sort();
    const std::vector<Entry>& entries = table.entries();
    const auto alphas = static_cast<std::size_t>(
        std::find_if(entries.begin(), entries.end(), [](Entry entry) { return alphaOf(entry) == 255; }) -
        entries.begin());
    const int bits = (mask & Reduce8To421) ? indexBits(entries.size()) : 8;
    if (!pays(picture, entries.size(), alphas, bits))
        return false;

    std::vector<std::uint8_t> indices = indicesOf(picture, table);
    for (const Entry entry : entries)
        picture.palette.push_back({static_cast<std::uint8_t>(entry >> 16),
                                   static_cast<std::uint8_t>(entry >> 8), static_cast<std::uint8_t>(entry)});
    for (std::size_t i = 0; i < alphas; ++i)
        picture.alphas.push_back(static_cast<std::uint8_t>(alphaOf(entries[i])));
    if (picture.background)
        picture.background->fill(table.indexOf(backgroundEntry(picture)));
    convertSignificantBits(picture);
    picture.transparent.reset();
    picture.colorType = PNG_COLOR_TYPE_PALETTE;
    packIndices(picture, std::move(indices), bits);
    return true;
}
