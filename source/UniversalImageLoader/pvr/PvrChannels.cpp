#include "PvrChannels.h"

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace {

enum Byte { Blue, Green, Red, Alpha }; ///< of a QRgb

/// A value of `width` bits in eight: its bits, repeated downwards.
int widened(int value, int width) {
    int result = 0;
    for (int shift = 8 - width; shift > -width; shift -= width)
        result |= shift >= 0 ? value << shift : value >> -shift;
    return result;
}

int nearestLevel(int value, int width) {
    // The level that has the value's top bits begins at or below it; the nearest one is that or beside it.
    const int middle = value >> (8 - width);
    int nearest = std::max(middle - 1, 0);
    for (int level = nearest + 1; level <= std::min(middle + 1, (1 << width) - 1); ++level)
        if (std::abs(widened(level, width) - value) < std::abs(widened(nearest, width) - value))
            nearest = level;
    return nearest;
}

QRgb mean(QRgb pixel) {
    const QRgb grey = static_cast<QRgb>(qRed(pixel) + qGreen(pixel) + qBlue(pixel) + 1) / 3;
    return (pixel & 0xFF000000) | grey * 0x010101;
}

} // namespace

std::optional<PvrChannels> PvrChannels::of(quint64 pixelFormat) {
    PvrChannels channels;
    if (!channels.parse(pixelFormat) || !channels.place())
        return {};
    channels.makeTables();
    return channels;
}

bool PvrChannels::parse(quint64 pixelFormat) {
    constexpr std::string_view letters = "rgbalix";
    for (int i = 0; i < 4; ++i) {
        const auto letter = static_cast<char>(pixelFormat >> (8 * i) & 0xFF);
        const auto width = static_cast<int>(pixelFormat >> (32 + 8 * i) & 0xFF);
        if (width == 0)
            continue;
        if (width > 8 || letters.find(letter) == std::string_view::npos)
            return false;
        m_channels[static_cast<std::size_t>(m_count++)] = {letter, width, 0};
        m_hasAlpha |= letter == 'a';
        m_greys |= letter == 'l' || letter == 'i';
    }
    m_greys |= m_count == 1 && m_hasAlpha;
    return m_count > 0;
}

/// Finds the channels' places in the word.
bool PvrChannels::place() {
    const auto end = m_channels.begin() + m_count;
    const bool bytes = std::all_of(m_channels.begin(), end, [](const Channel& c) { return c.width == 8; });
    int used = 0;
    for (auto channel = m_channels.begin(); channel != end; ++channel) {
        channel->shift = used;
        used += channel->width;
    }
    if (!bytes)
        for (auto channel = m_channels.begin(); channel != end; ++channel)
            channel->shift = used - channel->shift - channel->width;
    m_size = used / 8;
    return bytes || used == 8 || used == 16;
}

void PvrChannels::makeTables() {
    for (int i = 0; i < m_count; ++i)
        addToTables(m_channels[static_cast<std::size_t>(i)], m_unpacked[static_cast<std::size_t>(i)]);
    if (!m_hasAlpha)
        for (quint32& pixel : m_unpacked[0])
            pixel |= 0xFF000000;
}

void PvrChannels::addToTables(const Channel& channel, Table& unpacked) {
    struct Role {
        char letter;
        Byte source;
        quint32 target; ///< factor from a byte to bits of the QRgb
    };
    static constexpr Role roles[] = {{'r', Red, 1 << 16},    {'g', Green, 1 << 8},   {'b', Blue, 1},
                                     {'a', Alpha, 1U << 24}, {'l', Green, 0x010101}, {'i', Green, 0x010101}};
    for (const Role& role : roles) {
        if (role.letter != channel.letter)
            continue;
        const Byte source = m_greys && m_count == 1 ? Green : role.source;
        for (int value = 0; value < 256; ++value) {
            const auto level = static_cast<quint32>(nearestLevel(value, channel.width));
            m_packed[source][static_cast<std::size_t>(value)] |= level << channel.shift;
        }
        for (int value = 0; value < 1 << channel.width; ++value)
            unpacked[static_cast<std::size_t>(value)] =
                static_cast<quint32>(widened(value, channel.width)) * role.target;
    }
}

template <int size>
void PvrChannels::packTo(const QRgb* pixels, int count, quint8* bytes) const {
    for (int i = 0; i < count; ++i) {
        const QRgb pixel = m_greys ? mean(pixels[i]) : pixels[i];
        const quint32 word = m_packed[Blue][pixel & 0xFF] | m_packed[Green][pixel >> 8 & 0xFF] |
                             m_packed[Red][pixel >> 16 & 0xFF] | m_packed[Alpha][pixel >> 24];
        for (int byte = 0; byte < size; ++byte)
            *bytes++ = static_cast<quint8>(word >> (8 * byte));
    }
}

template <int size>
void PvrChannels::unpackFrom(const quint8* bytes, int count, QRgb* pixels) const {
    const auto channels = static_cast<std::size_t>(m_count);
    for (int i = 0; i < count; ++i) {
        quint32 word = 0;
        for (int byte = 0; byte < size; ++byte)
            word |= quint32{*bytes++} << (8 * byte);
        QRgb pixel = 0;
        for (std::size_t n = 0; n < channels; ++n)
            pixel |= m_unpacked[n][word >> m_channels[n].shift & ((1U << m_channels[n].width) - 1)];
        pixels[i] = pixel;
    }
}

void PvrChannels::pack(const QRgb* pixels, int count, quint8* bytes) const {
    static constexpr decltype(&PvrChannels::packTo<1>) bySize[] = {
        &PvrChannels::packTo<1>, &PvrChannels::packTo<2>, &PvrChannels::packTo<3>, &PvrChannels::packTo<4>};
    (this->*bySize[m_size - 1])(pixels, count, bytes);
}

void PvrChannels::unpack(const quint8* bytes, int count, QRgb* pixels) const {
    static constexpr decltype(&PvrChannels::unpackFrom<1>) bySize[] = {
        &PvrChannels::unpackFrom<1>, &PvrChannels::unpackFrom<2>, &PvrChannels::unpackFrom<3>,
        &PvrChannels::unpackFrom<4>};
    (this->*bySize[m_size - 1])(bytes, count, pixels);
}
