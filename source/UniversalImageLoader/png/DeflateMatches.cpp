#include "DeflateMatches.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

constexpr std::size_t minimumMatch = 3;
constexpr std::size_t maximumMatch = 258;

static_assert(std::endian::native == std::endian::little);

std::uint64_t load(const std::uint8_t* data) {
    std::uint64_t value;
    std::memcpy(&value, data, sizeof value);
    return value;
}

} // namespace

DeflateMatches::DeflateMatches(const PngFilteredRows& rows, std::size_t maximumDistance, unsigned maximumRank,
                               std::array<int, 2> memories)
    : m_data(rows.bytes.data()), m_size(rows.bytes.size()), m_maximumDistance(maximumDistance),
      m_maximumRank(maximumRank), m_hasTwoChains(memories[0] != memories[1]), m_chains(rows, maximumDistance),
      m_known(segmentSize) {
    for (std::size_t i = 0; i < memories.size(); ++i) {
        const int hashBits = memories[i] + 7;
        m_numbers[i] = {hashBits, std::vector<std::uint16_t>(std::size_t{1} << hashBits),
                        std::vector<std::uint16_t>(DeflateChains::ringSize)};
    }
}

std::size_t DeflateMatches::advance() {
    const std::size_t begin = m_end;
    m_end = std::min(begin + segmentSize, m_size);
    const std::size_t linked = std::min(m_end + maximumMatch, m_size);
    number(m_numbers[0], linked);
    if (m_hasTwoChains)
        number(m_numbers[1], linked);
    m_chains.move(begin, linked);
    m_linked = linked;
    std::fill(m_known.begin(), m_known.end(), Known{});
    m_found.clear();
    return m_end;
}

void DeflateMatches::number(Numbers& numbers, std::size_t end) const {
    // zlib's own hash: it decides which places share a chain.
    const unsigned shift = static_cast<unsigned>(numbers.hashBits + 2) / 3;
    const unsigned mask = (1U << numbers.hashBits) - 1;
    for (std::size_t place = m_linked; place < end && place + minimumMatch <= m_size; ++place) {
        const std::uint8_t* bytes = m_data + place;
        const unsigned hash =
            (unsigned{bytes[0]} << 2 * shift ^ unsigned{bytes[1]} << shift ^ bytes[2]) & mask;
        numbers.numbers[place % DeflateChains::ringSize] = ++numbers.counts[hash];
    }
}

std::size_t DeflateMatches::commonBytes(std::size_t a, std::size_t b, std::size_t maximum) const {
    std::size_t length = 0;
    for (; length + 8 <= maximum; length += 8)
        if (const std::uint64_t difference = load(m_data + a + length) ^ load(m_data + b + length))
            return length + static_cast<std::size_t>(std::countr_zero(difference)) / 8;
    while (length < maximum && m_data[a + length] == m_data[b + length])
        ++length;
    return length;
}

/// Finds the nearest match longer than `length`, as far as the chains reach.
bool DeflateMatches::findLonger(std::size_t position, std::size_t length, DeflateMatch& match) {
    // It has the first bytes of the string in common with the position, and the last. What is rarer is
    // followed; the farther the next such place is, the rarer it should be.
    const DeflateChains::Chain& chain = m_chains.ofAtMost(length + 1);
    const std::size_t last = position + length + 1 - chain.bytes();
    const std::size_t firstStep = chain.step(position);
    const std::size_t lastStep = chain.step(last);
    if (firstStep == 0 || lastStep == 0)
        return false;
    const std::size_t start = firstStep > lastStep ? position : last;
    const std::size_t maximum = std::min(maximumMatch, m_size - position);
    const std::size_t farthest = std::min(m_maximumDistance, position);
    std::size_t distance = 0;
    while (const std::size_t step = chain.step(start - distance)) {
        distance += step;
        if (distance > farthest)
            return false;
        const std::size_t place = position - distance;
        if (m_data[place + length] != m_data[position + length])
            continue;
        const std::size_t common = commonBytes(place, position, maximum);
        if (common <= length)
            continue;
        match.length = static_cast<std::uint16_t>(common);
        match.distance = static_cast<std::uint16_t>(distance);
        return true;
    }
    return false;
}

/// Fills in the ranks. False if deflate would give up before it comes to the match.
bool DeflateMatches::isInChain(std::size_t position, DeflateMatch& match) const {
    for (std::size_t i = 0; i < m_numbers.size(); ++i) {
        const std::vector<std::uint16_t>& numbers = m_numbers[m_hasTwoChains ? i : 0].numbers;
        const std::size_t place = position - match.distance;
        // Numbers may have wrapped around; a window has fewer places than they have values.
        match.ranks[i] = static_cast<std::uint16_t>(numbers[position % DeflateChains::ringSize] -
                                                    numbers[place % DeflateChains::ringSize]);
    }
    return std::min(match.ranks[0], match.ranks[1]) <= m_maximumRank;
}

DeflateMatches::Range DeflateMatches::find(std::size_t position) {
    const std::size_t first = m_found.size();
    const std::size_t maximum = std::min(maximumMatch, m_size - position);
    DeflateMatch match = {minimumMatch - 1, 0, {}};
    while (match.length < maximum && findLonger(position, match.length, match) && isInChain(position, match))
        m_found.push_back(match);
    m_known[position % segmentSize] = {static_cast<std::uint32_t>(first),
                                       static_cast<std::uint16_t>(m_found.size() - first), true};
    return {m_found.data() + first, m_found.data() + m_found.size()};
}
