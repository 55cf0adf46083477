#include "RegionMap.h"

#include <cstring>

namespace pvrtc {

namespace {

/// Channels of like colours and those of no edge differ by less than 4.
constexpr std::uint32_t unlikeBits = 0xFCFCFCFCU;

constexpr std::uint8_t distance(std::uint8_t a, std::uint8_t b) {
    return static_cast<std::uint8_t>(a > b ? a - b : b - a);
}

/// Pixels side by side, in rows or columns of a window, that belong together: their colours are alike, and
/// one of them at least lies on no edge, by its second difference along the line.
template <int Bits>
class Joints {
public:
    Joints(const PixelWindow<Bits>& window, bool vertical);

    /// Whether the pixel belongs to the next one to its right, or below it.
    bool joined(int place) const { return m_joined[place] != 0; }
    int count() const;

private:
    using Window = PixelWindow<Bits>;
    std::uint8_t m_joined[Window::count];
};

template <int Bits>
Joints<Bits>::Joints(const PixelWindow<Bits>& window, bool vertical) {
    constexpr int bytes = Window::count * 4;
    const int step = (vertical ? Window::width : 1) * 4;
    std::uint8_t pixels[bytes];
    std::uint8_t steps[bytes] = {};
    std::uint8_t bends[bytes] = {};
    std::memcpy(pixels, window.pixels, bytes);
    for (int at = 0; at < bytes - step; ++at)
        steps[at] = distance(pixels[at], pixels[at + step]);
    // Half the second difference.
    for (int at = step; at < bytes - step; ++at)
        bends[at] =
            distance(pixels[at], static_cast<std::uint8_t>((pixels[at - step] + pixels[at + step] + 1) / 2));

    std::uint32_t stepOfPixel[Window::count];
    std::uint32_t bendOfPixel[Window::count + Window::width] = {};
    std::memcpy(stepOfPixel, steps, bytes);
    std::memcpy(bendOfPixel, bends, bytes);
    // At the ends of a line there is no second difference.
    for (int place = 0; place < Window::count; ++place)
        if (vertical ? place < Window::width || place >= Window::count - Window::width
                     : place % Window::width == 0 || place % Window::width == Window::width - 1)
            bendOfPixel[place] = 0;
    const int pixelStep = step / 4;
    for (int place = 0; place < Window::count; ++place) {
        const bool smooth =
            ((bendOfPixel[place] & unlikeBits) == 0) | ((bendOfPixel[place + pixelStep] & unlikeBits) == 0);
        m_joined[place] = ((stepOfPixel[place] & unlikeBits) == 0) & smooth;
    }
    // The last of a line have no next one.
    for (int place = 0; place < Window::count; ++place)
        if (vertical ? place >= Window::count - Window::width : place % Window::width == Window::width - 1)
            m_joined[place] = 0;
}

template <int Bits>
int Joints<Bits>::count() const {
    int sum = 0;
    for (const std::uint8_t joined : m_joined)
        sum += joined;
    return sum;
}

/// Disjoint sets of the pixels of a window, of either size.
class DisjointSets {
public:
    DisjointSets() {
        for (int place = 0; place < maxCount; ++place)
            m_parents[place] = static_cast<std::uint8_t>(place);
    }
    int root(int place) {
        while (m_parents[place] != place)
            place = m_parents[place] = m_parents[m_parents[place]];
        return place;
    }
    /// The root of a set is its first pixel.
    void join(int a, int b) {
        a = root(a);
        b = root(b);
        m_parents[std::max(a, b)] = static_cast<std::uint8_t>(std::min(a, b));
    }

private:
    static constexpr int maxCount = PixelWindow<2>::count;
    std::uint8_t m_parents[maxCount];
};

} // namespace

template <int Bits>
RegionMap<Bits>::RegionMap(const PixelWindow<Bits>& window) : count(PixelWindow<Bits>::count) {
    using Window = PixelWindow<Bits>;
    const Joints<Bits> across(window, false);
    const Joints<Bits> down(window, true);
    if ((Window::count - across.count() - down.count()) * 4 >= Window::count)
        return;
    DisjointSets sets;
    for (int place = 0; place < Window::count; ++place) {
        if (across.joined(place))
            sets.join(place, place + 1);
        if (down.joined(place))
            sets.join(place, place + Window::width);
    }
    count = 0;
    std::uint8_t* region = &regions[0][0];
    for (int place = 0; place < Window::count; ++place) {
        const int root = sets.root(place);
        region[place] = root == place ? static_cast<std::uint8_t>(count++) : region[root];
    }
}

template struct RegionMap<2>;
template struct RegionMap<4>;

} // namespace pvrtc
