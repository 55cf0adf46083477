#include "DeflateLazySize.h"

#include <algorithm>

DeflateLazySize::DeflateLazySize(const PngFilteredRows& rows, int level, int memory, bool isFiltered,
                                 int windowBits, std::size_t rank)
    : m_data(rows.bytes.data()), m_size(rows.bytes.size()), m_level(DeflateLevel::of(level)),
      m_isFiltered(isFiltered), m_rank(rank), m_feed(rows, windowBits), m_blocks(memory) {}

DeflateLazySize::Match DeflateLazySize::search(DeflateMatches& matches, std::size_t known) const {
    const std::size_t lookahead = m_feed.end() - m_position;
    const std::size_t nice = std::min(m_level.nice, lookahead);
    const unsigned chain = known >= m_level.good ? m_level.chain / 4 : m_level.chain;
    Match best{known, 0};
    for (const DeflateMatch& match : matches.at(m_position)) {
        if (match.ranks[m_rank] > chain)
            break;
        // The window's first byte is never matched, since zlib takes its place for "none". At the farthest
        // distance it only looks at the start of a chain.
        if (m_position - match.distance <= m_feed.begin() ||
            (match.distance == m_feed.maximumDistance() && match.ranks[m_rank] > 1))
            break;
        if (match.length <= best.length)
            continue;
        best = {match.length, m_position - match.distance};
        if (best.length >= nice)
            break;
    }
    best.length = std::min(best.length, lookahead);
    if (best.length <= known)
        return {};
    constexpr std::size_t shortFiltered = 5;
    constexpr std::size_t tooFar = 4096;
    const bool isTooFar = best.length == 3 && m_position - best.start > tooFar;
    return best.length <= shortFiltered && (m_isFiltered || isTooFar) ? Match{} : best;
}

void DeflateLazySize::closeBlock(bool isLast) {
    m_blocks.close(m_position - m_blockStart, m_blockStart >= m_feed.begin(), isLast);
    m_blockStart = m_position;
}

void DeflateLazySize::run(DeflateMatches& matches, std::size_t until) {
    while (m_position < until) {
        m_feed.provide(m_position, DeflateFeed::minimumLookahead);
        const Match previous = m_match;
        m_match = previous.length < m_level.lazy ? search(matches, previous.length) : Match{};
        if (previous.length > noMatch && m_match.length <= previous.length) {
            const bool isFull = m_blocks.match(previous.length, m_position - 1 - previous.start);
            m_position += previous.length - 1;
            m_hasLiteral = false;
            m_match = {};
            if (isFull)
                closeBlock(false);
        } else {
            if (m_hasLiteral && m_blocks.literal(m_data[m_position - 1]))
                closeBlock(false);
            m_hasLiteral = true;
            ++m_position;
        }
    }
    if (until == m_size && !m_finished)
        finish();
}

void DeflateLazySize::finish() {
    // Reads on to the end, which moves the window if it can.
    m_feed.provide(m_position, DeflateFeed::minimumLookahead);
    if (m_hasLiteral)
        m_blocks.literal(m_data[m_position - 1]);
    closeBlock(true);
    m_finished = true;
}
