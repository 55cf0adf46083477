#pragma once

#include "DeflateChains.h"

#include <array>

/// One step of what zlib's deflate sees when it goes through its hash chain from the nearest place on: a
/// match longer than all nearer ones.
struct DeflateMatch {
    std::uint16_t length;               ///< bytes
    std::uint16_t distance;             ///< bytes
    std::array<std::uint16_t, 2> ranks; ///< place in the chain, from 1, for each of two memory levels
};

/// Finds for a position what deflate's chain would lead it to, without going through it: chains over longer
/// strings skip what is no longer match, and running numbers tell how many places of deflate's own chain were
/// skipped. That is why one search serves every level and strategy. Positions become ready in segments and
/// are worked out when they are asked for first. For one thread.
class DeflateMatches {
public:
    /// Positions that are ready at once.
    static constexpr std::size_t segmentSize = 1 << 12;

    struct Range {
        const DeflateMatch* first;
        const DeflateMatch* last;
        const DeflateMatch* begin() const { return first; }
        const DeflateMatch* end() const { return last; }
    };

    /// Matches reach back `maximumDistance` bytes and `maximumRank` places of the chain at most.
    /// `memories`: zlib's memory levels that the ranks are for. `rows` has to outlive this.
    DeflateMatches(const PngFilteredRows& rows, std::size_t maximumDistance, unsigned maximumRank,
                   std::array<int, 2> memories);

    /// Makes the next segment ready. The one before it isn't any more. Returns its end.
    std::size_t advance();

    /// For a position of the segment, by ascending length and distance. Valid until the next call.
    Range at(std::size_t position) {
        const Known known = m_known[position % segmentSize];
        const DeflateMatch* first = m_found.data() + known.first;
        return known.isKnown ? Range{first, first + known.count} : find(position);
    }

private:
    /// The numbers of places in one of deflate's own chains.
    struct Numbers {
        int hashBits;
        std::vector<std::uint16_t> counts; ///< by hash
        std::vector<std::uint16_t> numbers;
    };

    struct Known {
        std::uint32_t first = 0;
        std::uint16_t count = 0;
        bool isKnown = false;
    };

    void number(Numbers& numbers, std::size_t end) const;
    Range find(std::size_t position);
    bool findLonger(std::size_t position, std::size_t length, DeflateMatch& match);
    bool isInChain(std::size_t position, DeflateMatch& match) const;
    std::size_t commonBytes(std::size_t a, std::size_t b, std::size_t maximum) const;

    const std::uint8_t* const m_data;
    const std::size_t m_size;
    const std::size_t m_maximumDistance;
    const unsigned m_maximumRank;
    const bool m_hasTwoChains;
    DeflateChains m_chains;
    std::array<Numbers, 2> m_numbers;
    std::size_t m_end = 0;
    std::size_t m_linked = 0; ///< the chains reach beyond the segment, for the strings behind its positions
    std::vector<Known> m_known;
    std::vector<DeflateMatch> m_found;
};
