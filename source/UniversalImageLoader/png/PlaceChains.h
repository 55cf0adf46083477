#pragma once

#include "DeflateFormat.h"

#include <vector>

/// Places in a window of bytes by the hash of what stands there.
class PlaceChains {
public:
    static constexpr int hashBits = 15;

    PlaceChains() : m_last(std::size_t{1} << hashBits), m_previous(deflateFormat::window) {}

    /// `hash`: below 2 to the power of hashBits. Positions have to rise.
    void insert(std::size_t position, std::size_t hash) {
        m_previous[position % deflateFormat::window] = m_last[hash];
        m_last[hash] = static_cast<std::uint32_t>(position + 1);
    }

    /// Whether a hash has no position from `oldest` on.
    bool isEmpty(std::size_t hash, std::size_t oldest) const { return m_last[hash] <= oldest; }

    /// Calls `visit` with up to `most` positions of a hash from `oldest` on, the latest first, until it
    /// returns false.
    template <class Visit>
    void walk(std::size_t hash, std::size_t oldest, int most, Visit visit) const {
        std::size_t place = m_last[hash];
        for (; place > oldest && most > 0 && visit(place - 1); --most) {
            // A place that was overwritten leads to a later one.
            const std::size_t previous = m_previous[(place - 1) % deflateFormat::window];
            if (previous >= place)
                return;
            place = previous;
        }
    }

private:
    /// The last place of each hash, and for each place the one before it. They count from 1, 0 ends a chain.
    std::vector<std::uint32_t> m_last;
    std::vector<std::uint32_t> m_previous;
};
