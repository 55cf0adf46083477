#include "DeflateParser.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace {

std::uint64_t eightBytes(const std::uint8_t* bytes) {
    std::uint64_t value;
    std::memcpy(&value, bytes, sizeof value);
    if constexpr (std::endian::native == std::endian::big)
        value = __builtin_bswap64(value);
    return value;
}

/// How many bytes are the same, up to `limit`. Reads up to 7 bytes behind it.
std::size_t commonLength(const std::uint8_t* a, const std::uint8_t* b, std::size_t limit) {
    for (std::size_t length = 0; length < limit; length += 8) {
        const std::uint64_t difference = eightBytes(a + length) ^ eightBytes(b + length);
        if (difference != 0)
            return std::min(length + static_cast<std::size_t>(std::countr_zero(difference)) / 8, limit);
    }
    return limit;
}

constexpr std::uint64_t hashFactor = 0x9E3779B185EBCA87;

} // namespace

/// One search: what is known of the place, and the best match so far.
struct DeflateParser::Search {
    Search(const DeflateCosts& symbolCosts, const std::uint8_t* bytes, std::size_t longestAllowed,
           const Match& toBeat)
        : costs(symbolCosts), here(bytes), limit(longestAllowed), probe(eightBytes(bytes)), best(toBeat) {}

    /// False if no other match can be longer.
    bool tryDistance(std::size_t distance) {
        if ((eightBytes(here + offset - distance) ^ probe) << ignored == 0)
            measure(distance);
        return longest < limit;
    }

    void measure(std::size_t distance);
    std::size_t runLength() const;

    const DeflateCosts& costs;
    const std::uint8_t* const here;
    const std::size_t limit; ///< of a match's length
    std::uint64_t probe;     ///< eight bytes, from `offset` on, of which a longer match has the first
    std::size_t offset = 0;
    std::size_t ignored = 8 * (8 - shortestMatch); ///< bits of the probe that it needn't have
    std::size_t longest = shortestMatch - 1;
    std::size_t counted = 0; ///< bytes whose cost as literals is known
    int literals = 0;
    Match best;
};

/// Takes the match at a distance as the longest if it is, and as the best if it saves most.
inline void DeflateParser::Search::measure(std::size_t distance) {
    const std::size_t length = commonLength(here, here - distance, limit);
    if (length <= longest)
        return;
    longest = length;
    if (length < sizeof probe) {
        ignored = 8 * (sizeof probe - 1 - length);
    } else {
        // What differs within the bytes that would make it the longest differs mostly in the last of them.
        ignored = 0;
        offset = length + 1 - sizeof probe;
        probe = eightBytes(here + offset);
    }
    for (; counted < length; ++counted)
        literals += costs.literal(here[counted]);
    const int gain = literals - costs.match(length, distance);
    if (gain > best.gain)
        best = {length, distance, gain};
}

/// How often the first byte is repeated.
inline std::size_t DeflateParser::Search::runLength() const {
    const std::uint64_t start = eightBytes(here);
    if (start != (start << 8U | (start & 0xFFU)))
        return 1;
    return 1 + commonLength(here, here + 1, limit - 1);
}

inline std::size_t DeflateParser::hash(std::size_t position) const {
    const std::uint64_t key = eightBytes(m_bytes + position) << (64 - 8 * shortestMatch);
    return static_cast<std::size_t>(key * hashFactor >> (64 - PlaceChains::hashBits));
}

inline void DeflateParser::insert(std::size_t position) { m_chains.insert(position, hash(position)); }

DeflateParser::DeflateParser(const std::uint8_t* bytes, std::size_t begin, std::size_t end,
                             const DeflateEffort& effort)
    : m_bytes(bytes), m_position(begin), m_end(end), m_effort(effort) {
    for (std::size_t position = begin - std::min(begin, deflateFormat::window); position < begin; ++position)
        insert(position);
}

/// Whether the bytes at a place are those at a distance before it, as far as the shortest match goes.
inline bool DeflateParser::repeats(std::size_t position, std::size_t distance) const {
    const std::uint8_t* const here = m_bytes + position;
    return distance <= position &&
           (eightBytes(here) ^ eightBytes(here - distance)) << (64 - 8 * shortestMatch) == 0;
}

/// Looks for a match that saves more than `match`, which it then becomes.
bool DeflateParser::find(std::size_t position, Match& match) {
    const std::size_t oldest = position - std::min(position, deflateFormat::window - 1);
    const std::size_t key = hash(position);
    // Half of the places that are searched have nothing to try.
    if (m_chains.isEmpty(key, oldest) && !repeats(position, m_recent[0]) && !repeats(position, m_recent[1]))
        return false;
    Search search(m_costs, m_bytes + position, std::min(m_end - position, deflateFormat::longestMatch),
                  match);
    // Among noise a search seldom pays.
    const int places = std::max(m_effort.places >> std::min(m_misses / patience, 4), 1);
    m_chains.walk(key, oldest, places,
                  [&](std::size_t place) { return search.tryDistance(position - place); });
    // In the midst of a run all places are alike: what follows its end tells them apart.
    const std::size_t run = search.runLength();
    if (run > shortestMatch && run < search.limit && search.longest < search.limit) {
        const std::size_t shift = run - runTail;
        m_chains.walk(hash(position + shift), oldest, m_effort.runPlaces, [&](std::size_t place) {
            return place < shift + oldest || place >= position + shift ||
                   search.tryDistance(position + shift - place);
        });
    }
    // Rows repeat at one distance, which among many equal places would come up too late.
    for (const std::size_t distance : m_recent)
        if (distance <= position)
            search.tryDistance(distance);
    const bool found = search.best.gain > match.gain;
    match = search.best;
    return found;
}

void DeflateParser::add(DeflateSymbols& block, std::size_t length, std::size_t value) {
    block.symbols.push_back({static_cast<std::uint16_t>(length), static_cast<std::uint16_t>(value)});
    if (block.symbols.size() - m_learnt < m_learning)
        return;
    m_learning = std::min(2 * m_learning, lastLearning);
    m_costs.learn(block.symbols.data() + m_learnt, block.symbols.data() + block.symbols.size());
    m_learnt = block.symbols.size();
}

void DeflateParser::takeMatch(DeflateSymbols& block, Match match) {
    while (match.length < lazyLimit && m_position + 1 < m_end && find(m_position + 1, match)) {
        add(block, 0, m_bytes[m_position]);
        insert(++m_position);
    }
    add(block, match.length, match.distance - 1);
    if (match.distance != m_recent[0]) {
        m_recent[1] = m_recent[0];
        m_recent[0] = match.distance;
    }
    const std::size_t end = m_position + match.length;
    // Within a run all places are as good as the last ones.
    if (match.length >= longMatch && match.distance < shortestMatch)
        m_position = end - longMatch / 2;
    while (++m_position < end)
        insert(m_position);
}

bool DeflateParser::nextBlock(DeflateSymbols& block) {
    block.symbols.clear();
    block.begin = m_position;
    m_learnt = 0;
    while (m_position < m_end && block.symbols.size() < DeflateSymbols::capacity) {
        Match match;
        const bool worthSearch = m_misses < noise || m_position % noiseStep == 0;
        const bool found = worthSearch && find(m_position, match);
        insert(m_position);
        m_misses = found ? 0 : m_misses + 1;
        if (found)
            takeMatch(block, match);
        else
            add(block, 0, m_bytes[m_position++]);
    }
    block.end = m_position;
    return block.begin < block.end;
}
