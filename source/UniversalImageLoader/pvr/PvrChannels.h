#pragma once

#include <QRgb>

#include <array>
#include <optional>

/// How the channels of an uncompressed pixel format lie in the bytes of a pixel: channels of eight bits as
/// bytes in the order of their letters, others in a little-endian word, the first at the top. Letters are r,
/// g, b, a, l and i (grey), x (nothing).
class PvrChannels {
public:
    /// None for compressed formats, letters of other kinds, more than eight bits a channel, and pixels of
    /// other sizes than 8, 16, 24 and 32 bits.
    static std::optional<PvrChannels> of(quint64 pixelFormat);

    int bytesPerPixel() const { return m_size; }

    /// Each channel takes the level that, widened again, is nearest to its value, of two the lower. Grey is
    /// the mean of the colours; alpha that stands alone is the grey too, since a sheet of alpha is grey.
    void pack(const QRgb* pixels, int count, quint8* bytes) const;

    /// Channels are widened by repeating their bits, so that packing gives the same bytes again. Colours that
    /// the format has no channel for are black, alpha is 255.
    void unpack(const quint8* bytes, int count, QRgb* pixels) const;

private:
    struct Channel {
        char letter;
        int width; ///< bits
        int shift; ///< of its lowest bit in the word
    };
    using Table = std::array<quint32, 256>;

    PvrChannels() = default;
    bool parse(quint64 pixelFormat);
    bool place();
    void makeTables();
    void addToTables(const Channel& channel, Table& unpacked);
    template <int size>
    void packTo(const QRgb* pixels, int count, quint8* bytes) const;
    template <int size>
    void unpackFrom(const quint8* bytes, int count, QRgb* pixels) const;

    std::array<Channel, 4> m_channels = {};
    int m_count = 0; ///< of channels
    int m_size = 0;  ///< bytes a pixel
    bool m_hasAlpha = false;
    bool m_greys = false;                 ///< colours are packed as their mean
    std::array<Table, 4> m_packed = {};   ///< from the blue, green, red and alpha byte to bits of the word
    std::array<Table, 4> m_unpacked = {}; ///< from each channel's value to bits of the QRgb
};
