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

} // namespace

DeflateParser::DeflateParser(const std::uint8_t* bytes, std::size_t begin, std::size_t end, int effort)
    : m_bytes(bytes), m_position(begin), m_end(end), m_effort(effort), m_last(std::size_t{1} << hashBits),
      m_previous(deflateFormat::window) {
    for (std::size_t position = begin - std::min(begin, deflateFormat::window); position < begin; ++position)
        insert(position);
}

std::size_t DeflateParser::hash(std::size_t position) const {
    constexpr std::uint64_t multiplier = 0x9E3779B185EBCA87;
    const std::uint64_t key = eightBytes(m_bytes + position) << (64 - 8 * shortestMatch);
    return static_cast<std::size_t>(key * multiplier >> (64 - hashBits));
}

void DeflateParser::insert(std::size_t position) {
    std::uint32_t& last = m_last[hash(position)];
    m_previous[position % deflateFormat::window] = last;
    last = static_cast<std::uint32_t>(position + 1);
}

/// What a match at a distance saves, if it is longer than all before; then it is the longest.
inline int DeflateParser::gainOf(Search& search, std::size_t distance) const {
    if (search.longest >= search.limit)
        return 0;
    const std::uint8_t* const there = search.here - distance;
    const std::uint64_t difference = eightBytes(there) ^ search.start;
    std::size_t length = std::min(static_cast<std::size_t>(std::countr_zero(difference)) / 8, search.limit);
    if (difference == 0 && there[search.longest] == search.here[search.longest])
        length = commonLength(search.here, there, search.limit);
    if (length <= search.longest)
        return 0;
    search.longest = length;
    for (; search.counted < length; ++search.counted)
        search.literals += m_costs.literal(search.here[search.counted]);
    return search.literals - m_costs.match(length, distance);
}

/// Looks for a match that saves more than `match`, which it then becomes.
bool DeflateParser::find(std::size_t position, Match& match) const {
    Search search{m_bytes + position, eightBytes(m_bytes + position),
                  std::min(m_end - position, deflateFormat::longestMatch)};
    bool found = false;
    const auto tryDistance = [&](std::size_t distance) {
        const int gain = gainOf(search, distance);
        if (gain <= match.gain)
            return;
        match = {search.longest, distance, gain};
        found = true;
    };
    const std::size_t oldest = position - std::min(position, deflateFormat::window - 1);
    std::size_t place = m_last[hash(position)];
    // Among noise a search seldom pays; behind a long match there is time for a long one.
    for (int left = (m_effort >> std::min(m_misses / patience, 4)) + m_credit;
         place > oldest && left > 0 && search.longest < search.limit; --left) {
        tryDistance(position + 1 - place);
        // A place that was overwritten leads to a later one.
        const std::size_t previous = m_previous[(place - 1) % deflateFormat::window];
        if (previous >= place)
            break;
        place = previous;
    }
    // Rows repeat at one distance, which among the many equal places of a run would come up too late.
    for (const std::size_t distance : m_recent)
        if (distance <= position)
            tryDistance(distance);
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
