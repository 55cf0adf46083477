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

DeflateParser::DeflateParser(const std::uint8_t* bytes, std::size_t begin, std::size_t end,
                             const DeflateEffort& effort)
    : m_bytes(bytes), m_position(begin), m_end(end), m_effort(effort) {
    for (std::size_t position = begin - std::min(begin, deflateFormat::window); position < begin; ++position)
        insert(position);
}

std::size_t DeflateParser::hash(std::size_t position) const {
    const std::uint64_t key = eightBytes(m_bytes + position) << (64 - 8 * shortestMatch);
    return static_cast<std::size_t>(key * hashFactor >> (64 - PlaceChains::hashBits));
}

void DeflateParser::insert(std::size_t position) { m_chains.insert(position, hash(position)); }

/// What a match at a distance saves, if it is longer than all before; then it is the longest.
inline int DeflateParser::gainOf(Search& search, std::size_t distance) const {
    if (search.longest >= search.limit)
        return 0;
    const std::uint8_t* const there = search.here - distance;
    // What differs within the bytes that would make it the longest differs mostly in the last of them.
    const std::size_t last = search.longest < 8 ? 0 : search.longest - 7;
    const std::uint64_t difference = eightBytes(there + last) ^ search.probe;
    if (last > 0 && difference != 0)
        return 0;
    const std::size_t length =
        difference == 0 ? commonLength(search.here, there, search.limit)
                        : std::min(static_cast<std::size_t>(std::countr_zero(difference)) / 8, search.limit);
    if (length <= search.longest)
        return 0;
    search.longest = length;
    if (length >= 8 && length < search.limit)
        search.probe = eightBytes(search.here + length - 7);
    for (; search.counted < length; ++search.counted)
        search.literals += m_costs.literal(search.here[search.counted]);
    return search.literals - m_costs.match(length, distance);
}

/// Looks for a match that saves more than `match`, which it then becomes.
bool DeflateParser::find(std::size_t position, Match& match) {
    Search search{m_bytes + position, eightBytes(m_bytes + position),
                  std::min(m_end - position, deflateFormat::longestMatch)};
    bool found = false;
    const auto tryDistance = [&](std::size_t distance) {
        const int gain = gainOf(search, distance);
        if (gain > match.gain) {
            match = {search.longest, distance, gain};
            found = true;
        }
        return search.longest < search.limit;
    };
    const std::size_t oldest = position - std::min(position, deflateFormat::window - 1);
    const auto tryPlace = [&](std::size_t place) { return tryDistance(position - place); };
    // Among noise a search seldom pays; behind a long match there is time for a long one.
    const int places = std::max(m_effort.places >> std::min(m_misses / patience, 4), 1);
    m_chains.walk(hash(position), oldest, places + m_credit, tryPlace);
    // In the midst of a run all places are alike: what follows its end tells them apart.
    const std::size_t run = runLength(search);
    if (run > shortestMatch && run < search.limit && search.longest < search.limit) {
        const std::size_t shift = run - runTail;
        const auto tryRun = [&](std::size_t place) {
            return place < shift + oldest || place >= position + shift ||
                   tryDistance(position + shift - place);
        };
        m_chains.walk(hash(position + shift), oldest, m_effort.runPlaces, tryRun);
    }
    // Rows repeat at one distance, which among many equal places would come up too late.
    for (const std::size_t distance : m_recent)
        if (distance <= position)
            tryDistance(distance);
    return found;
}

/// How often the first byte is repeated.
std::size_t DeflateParser::runLength(const Search& search) {
    const std::uint64_t start = eightBytes(search.here);
    if (start != (start << 8U | (start & 0xFFU)))
        return 1;
    return 1 + commonLength(search.here, search.here + 1, search.limit - 1);
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
    m_credit = match.length >= longMatch ? static_cast<int>(match.length) : 0;
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
