#include "DeflateChains.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t maximumMatch = 258;
constexpr int hashBits = 15;
constexpr std::uint64_t factor = 0x9E3779B97F4A7C15U;

/// Mixes the bytes of a string that moves on byte by byte.
class RollingHash {
public:
    RollingHash(const std::uint8_t* data, std::size_t bytes) : m_data(data), m_bytes(bytes) {
        for (std::size_t i = 0; i < bytes; ++i) {
            m_value = m_value * factor + data[i];
            m_outgoing *= factor;
        }
    }

    std::uint64_t value() const { return m_value * factor; }

    void move() {
        m_value = m_value * factor + (m_data[m_bytes] - m_outgoing * *m_data);
        ++m_data;
    }

private:
    const std::uint8_t* m_data;
    const std::size_t m_bytes;
    std::uint64_t m_value = 0;
    std::uint64_t m_outgoing = 1;
};

} // namespace

DeflateChains::Chain::Chain(std::size_t bytes)
    : m_bytes(bytes), m_heads(std::size_t{1} << hashBits), m_links(ringSize) {}

DeflateChains::DeflateChains(const PngFilteredRows& rows, std::size_t maximumDistance)
    : m_data(rows.bytes.data()), m_size(rows.bytes.size()), m_maximumDistance(maximumDistance),
      m_ofAtMost(maximumMatch + 1) {
    for (const std::size_t bytes : {3, 4, 6, 8, 16, 32, 64, 128, 256}) {
        std::fill(m_ofAtMost.begin() + static_cast<std::ptrdiff_t>(bytes), m_ofAtMost.end(),
                  static_cast<std::uint8_t>(m_chains.size()));
        m_chains.push_back(Chain(bytes));
    }
}

void DeflateChains::move(std::size_t begin, std::size_t end) {
    m_begin = begin;
    m_end = end;
}

/// The bytes at a place with the last of them on top.
std::uint64_t DeflateChains::firstBytes(std::size_t place, std::size_t count) const {
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, m_data + place, std::min(sizeof bytes, m_size - place));
    return bytes << (64 - 8 * count);
}

void DeflateChains::extend(Chain& chain) const {
    // What is out of reach for all places in question isn't needed any more.
    if (m_begin > m_maximumDistance)
        chain.m_end = std::max(chain.m_end, m_begin - m_maximumDistance);
    const std::size_t strings = m_size < chain.m_bytes ? 0 : m_size - chain.m_bytes + 1;
    const std::size_t end = std::clamp(strings, chain.m_end, m_end);
    if (chain.m_bytes <= sizeof(std::uint64_t)) {
        link(chain, end, [&](std::size_t place) { return firstBytes(place, chain.m_bytes) * factor; });
    } else if (chain.m_end < end) {
        RollingHash hash(m_data + chain.m_end, chain.m_bytes);
        link(chain, end, [&](std::size_t place) {
            const std::uint64_t value = hash.value();
            if (place + 1 < strings)
                hash.move();
            return value;
        });
    }
    for (; chain.m_end < m_end; ++chain.m_end)
        chain.m_links[chain.m_end % ringSize] = 0;
}

template <class Hash>
void DeflateChains::link(Chain& chain, std::size_t end, Hash hash) const {
    for (; chain.m_end < end; ++chain.m_end) {
        const std::size_t place = chain.m_end;
        // Heads hold the place plus one, so that 0 is none.
        std::uint32_t& head = chain.m_heads[hash(place) >> (64 - hashBits)];
        const std::size_t distance = head == 0 ? 0 : place + 1 - head;
        chain.m_links[place % ringSize] =
            distance <= m_maximumDistance ? static_cast<std::uint16_t>(distance) : std::uint16_t{0};
        head = static_cast<std::uint32_t>(place + 1);
    }
}
