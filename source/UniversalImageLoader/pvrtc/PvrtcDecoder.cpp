#include "PvrtcDecoder.h"

#include "BlendedRow.h"
#include "SideBySide.h"

namespace pvrtc {

namespace {

/// The modulation of a block. The other mode is punch-through with 4 bits, and two stored bits for every
/// second pixel with 2 bits.
struct BlockModulation {
    std::uint32_t bits;
    bool otherMode;
};

struct PixelModulation {
    int eighths;
    bool transparent;
};

std::uint32_t readWord(const std::uint8_t* bytes) {
    return bytes[0] | std::uint32_t{bytes[1]} << 8U | std::uint32_t{bytes[2]} << 16U |
           std::uint32_t{bytes[3]} << 24U;
}

template <int Bits>
class Decoder {
public:
    Decoder(const std::uint8_t* data, int width, int height);

    /// Decodes a row of blocks.
    void decodeRow(int row, std::uint8_t* rgba) const;

private:
    static constexpr int blockWidth = pvrtcBlockWidth(Bits);

    std::span<const PvrtcColorPair> colors(int row) const {
        return {m_colors.data() + static_cast<std::size_t>(row & (m_rows - 1)) * m_columns,
                static_cast<std::size_t>(m_columns)};
    }
    const BlockModulation& blockOfPixel(int x, int y) const {
        return m_modulations[static_cast<std::size_t>(y / pvrtcBlockHeight) * m_columns + x / blockWidth];
    }
    PixelModulation modulation(int x, int y) const;
    int storedLevel(int x, int y) const;

    int m_columns;
    int m_rows;
    std::vector<PvrtcColorPair> m_colors;
    std::vector<BlockModulation> m_modulations;
};

template <int Bits>
Decoder<Bits>::Decoder(const std::uint8_t* data, int width, int height)
    : m_columns(width / blockWidth), m_rows(height / pvrtcBlockHeight) {
    const std::vector<std::uint32_t> order = pvrtcBlockOrder(m_columns, m_rows);
    m_colors.reserve(order.size());
    m_modulations.reserve(order.size());
    for (const std::uint32_t index : order) {
        const std::uint8_t* bytes = data + std::size_t{index} * pvrtcBlockBytes;
        const std::uint32_t colors = readWord(bytes + 4);
        m_colors.push_back(pvrtcUnpackColors(colors));
        m_modulations.push_back({readWord(bytes), (colors & 1U) != 0});
    }
}

template <>
PixelModulation Decoder<4>::modulation(int x, int y) const {
    const BlockModulation& own = blockOfPixel(x, y);
    const unsigned value = own.bits >> 2 * (x % 4 + y % 4 * 4) & 3U;
    return own.otherMode ? PixelModulation{pvrtcPunchThroughLevels[value], value == 2}
                         : PixelModulation{pvrtcLevels[value], false};
}

/// The level of a 2-bit pixel that isn't interpolated; coordinates may lie one outside.
template <>
int Decoder<2>::storedLevel(int x, int y) const {
    x &= m_columns * blockWidth - 1;
    y &= m_rows * pvrtcBlockHeight - 1;
    const BlockModulation& own = blockOfPixel(x, y);
    const int pixel = x % 8 + y % 4 * 8;
    if (!own.otherMode)
        return (own.bits >> pixel & 1U) != 0 ? 8 : 0;

    // The low bits of the first pixel and of the one at the centre choose the interpolation; there the high
    // bit stands for both.
    constexpr int centre = 20;
    const int position = pixel / 2 * 2;
    const bool lostLowBit = position == 0 || (position == centre && (own.bits & 1U) != 0);
    const unsigned value = own.bits >> position & 3U;
    return pvrtcLevels[lostLowBit ? (value >> 1U) * 3 : value];
}

template <>
PixelModulation Decoder<2>::modulation(int x, int y) const {
    const BlockModulation& own = blockOfPixel(x, y);
    if (!own.otherMode || (x + y) % 2 == 0)
        return {storedLevel(x, y), false};
    const bool oneDirection = (own.bits & 1U) != 0;
    const bool vertical = (own.bits >> 20U & 1U) != 0;
    int sum = 0;
    if (!oneDirection || !vertical)
        sum += storedLevel(x - 1, y) + storedLevel(x + 1, y);
    if (!oneDirection || vertical)
        sum += storedLevel(x, y - 1) + storedLevel(x, y + 1);
    return {oneDirection ? (sum + 1) / 2 : (sum + 2) / 4, false};
}

template <int Bits>
void Decoder<Bits>::decodeRow(int row, std::uint8_t* rgba) const {
    const int width = m_columns * blockWidth;
    std::vector<PixelEnds> ends(static_cast<std::size_t>(width));
    for (int line = 0; line < pvrtcBlockHeight; ++line) {
        const int y = row * pvrtcBlockHeight + line;
        const int fromCentre = y + pvrtcBlockHeight / 2;
        const int below = fromCentre / pvrtcBlockHeight;
        blendRow<Bits>(colors(below - 1), colors(below), fromCentre % pvrtcBlockHeight, ends.data());
        for (int x = 0; x < width; ++x, rgba += 4) {
            const PixelModulation pixel = modulation(x, y);
            const Int16x8 color =
                modulated(ends[static_cast<std::size_t>(x)], static_cast<std::int16_t>(pixel.eighths));
            for (int channel = 0; channel < 4; ++channel)
                rgba[channel] = static_cast<std::uint8_t>(color[channel]);
            if (pixel.transparent)
                rgba[3] = 0;
        }
    }
}

template <int Bits>
void decode(const std::uint8_t* blocks, int width, int height, std::uint8_t* rgba) {
    const Decoder<Bits> decoder(blocks, width, height);
    const std::size_t rowBytes = static_cast<std::size_t>(width) * pvrtcBlockHeight * 4;
    sideBySide(static_cast<std::size_t>(height / pvrtcBlockHeight),
               [&](std::size_t row) { decoder.decodeRow(static_cast<int>(row), rgba + row * rowBytes); });
}

} // namespace

} // namespace pvrtc

void pvrtcDecode(const std::uint8_t* blocks, int width, int height, int bits, std::uint8_t* rgba) {
    if (bits == 2)
        pvrtc::decode<2>(blocks, width, height, rgba);
    else
        pvrtc::decode<4>(blocks, width, height, rgba);
}
