#pragma once

#include "PngFilteredRows.h"

/// Which places have the same bytes: chains of the places that begin with the same string, for strings of
/// several lengths. Each is made when it is asked for, as easy pictures need few of them. Reaches back one
/// window of deflate. For one thread.
class DeflateChains {
public:
    static constexpr std::size_t ringSize = 1 << 16; ///< places that are remembered

    /// The places with strings of one length.
    class Chain {
    public:
        /// Length of the string in bytes.
        std::size_t bytes() const { return m_bytes; }

        /// How far before a place the nearest one with the same string is; 0 if out of reach. May lead to
        /// another string (hashes can agree).
        std::size_t step(std::size_t place) const { return m_links[place % ringSize]; }

    private:
        friend class DeflateChains;

        explicit Chain(std::size_t bytes);

        const std::size_t m_bytes;
        std::size_t m_end = 0; ///< behind the last place in it
        std::vector<std::uint32_t> m_heads;
        std::vector<std::uint16_t> m_links;
    };

    /// `rows` has to outlive this.
    DeflateChains(const PngFilteredRows& rows, std::size_t maximumDistance);

    /// From now on the places in question are those from `begin` to `end`.
    void move(std::size_t begin, std::size_t end);

    /// The chain of the longest strings that have at most so many bytes (3 at least).
    const Chain& ofAtMost(std::size_t bytes) {
        Chain& chain = m_chains[m_ofAtMost[bytes]];
        if (chain.m_end < m_end)
            extend(chain);
        return chain;
    }

private:
    void extend(Chain& chain) const;
    template <class Hash>
    void link(Chain& chain, std::size_t end, Hash hash) const;
    std::uint64_t firstBytes(std::size_t place, std::size_t count) const;

    const std::uint8_t* const m_data;
    const std::size_t m_size;
    const std::size_t m_maximumDistance;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::vector<Chain> m_chains;
    std::vector<std::uint8_t> m_ofAtMost; ///< by bytes, index of the chain
};
