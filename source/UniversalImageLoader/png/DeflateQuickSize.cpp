#include "DeflateQuickSize.h"

#include "DeflateBlocks.h"
#include "DeflateFeed.h"
#include "DeflateLevel.h"

#include <algorithm>

namespace {

constexpr std::size_t minimumMatch = 3;
constexpr std::size_t maximumMatch = 258;

/// What the ways have in common: a position that moves on symbol by symbol, and blocks that fill up.
class Stream {
public:
    Stream(const PngFilteredRows& rows, int memory, int windowBits, const std::atomic<std::size_t>& limit)
        : m_data(rows.bytes.data()), m_size(rows.bytes.size()), m_limit(limit), m_feed(rows, windowBits),
          m_blocks(memory) {}

    const std::uint8_t* data() const { return m_data; }
    std::size_t position() const { return m_position; }
    const DeflateFeed& feed() const { return m_feed; }
    std::size_t lookahead() const { return m_feed.end() - m_position; }

    /// Whether there is more to do. So many bytes are read ahead then, or all.
    bool provide(std::size_t wanted) {
        if (m_isTooLarge)
            return false;
        m_feed.provide(m_position, wanted);
        return m_position < m_size;
    }

    void literal() {
        const bool isFull = m_blocks.literal(m_data[m_position++]);
        if (isFull)
            close(false);
    }

    void match(std::size_t length, std::size_t distance) {
        const bool isFull = m_blocks.match(length, distance);
        m_position += length;
        if (isFull)
            close(false);
    }

    std::optional<std::size_t> finish() {
        if (!m_isTooLarge)
            close(true);
        return m_isTooLarge ? std::nullopt : std::optional(m_blocks.streamBytes());
    }

private:
    void close(bool isLast) {
        m_blocks.close(m_position - m_blockStart, m_blockStart >= m_feed.begin(), isLast);
        m_blockStart = m_position;
        m_isTooLarge = m_blocks.streamBytes() > m_limit.load(std::memory_order_relaxed);
    }

    const std::uint8_t* const m_data;
    const std::size_t m_size;
    const std::atomic<std::size_t>& m_limit;
    DeflateFeed m_feed;
    DeflateBlocks m_blocks;
    std::size_t m_position = 0;
    std::size_t m_blockStart = 0;
    bool m_isTooLarge = false;
};

/// zlib's hash chains, into which at these levels not every place goes.
class FastChains {
public:
    FastChains(const Stream& stream, int memory, int windowBits)
        : m_stream(stream), m_hashBits(static_cast<unsigned>(memory) + 7),
          m_heads(std::size_t{1} << m_hashBits, none), m_links(std::size_t{1} << windowBits, none) {}

    /// Adds a place. Returns the one before it in its chain.
    std::int64_t insert(std::size_t place) {
        const unsigned shift = (m_hashBits + 2) / 3;
        const std::uint8_t* bytes = m_stream.data() + place;
        const unsigned hash = (unsigned{bytes[0]} << 2 * shift ^ unsigned{bytes[1]} << shift ^ bytes[2]) &
                              ((1U << m_hashBits) - 1);
        const std::int64_t before = m_heads[hash];
        m_links[place & (m_links.size() - 1)] = before;
        m_heads[hash] = static_cast<std::int64_t>(place);
        return before;
    }

    /// The longest match in the chain from a place on; length 2 is none.
    std::pair<std::size_t, std::size_t> longest(std::int64_t place, const DeflateLevel& level) const {
        const std::uint8_t* data = m_stream.data();
        const std::size_t position = m_stream.position();
        const auto begin = static_cast<std::int64_t>(m_stream.feed().begin());
        const auto farthest = static_cast<std::int64_t>(position) -
                              static_cast<std::int64_t>(m_stream.feed().maximumDistance());
        const std::size_t lookahead = m_stream.lookahead();
        const std::size_t nice = std::min(level.nice, lookahead);
        const std::size_t maximum = std::min(maximumMatch, lookahead);
        std::size_t length = minimumMatch - 1;
        std::size_t start = 0;
        // The window's first byte is never matched, since zlib takes its place for "none". At the farthest
        // distance it only looks at the start of a chain.
        if (place <= begin || place < farthest)
            return {length, start};
        unsigned left = level.chain;
        do {
            const std::uint8_t* candidate = data + place;
            if (length >= maximum || candidate[length] != data[position + length])
                continue;
            std::size_t common = 0;
            while (common < maximum && candidate[common] == data[position + common])
                ++common;
            if (common > length) {
                length = common;
                start = static_cast<std::size_t>(place);
                if (length >= nice)
                    break;
            }
        } while ((place = m_links[static_cast<std::size_t>(place) & (m_links.size() - 1)]) >
                     std::max(begin, farthest) &&
                 --left != 0);
        return {length, start};
    }

private:
    static constexpr std::int64_t none = -1;

    const Stream& m_stream;
    const unsigned m_hashBits;
    std::vector<std::int64_t> m_heads;
    std::vector<std::int64_t> m_links;
};

} // namespace

std::optional<std::size_t> deflateFastSize(const PngFilteredRows& rows, int level, int memory, int windowBits,
                                           const std::atomic<std::size_t>& limit) {
    const DeflateLevel& parameters = DeflateLevel::of(level);
    Stream stream(rows, memory, windowBits, limit);
    FastChains chains(stream, memory, windowBits);
    while (stream.provide(DeflateFeed::minimumLookahead)) {
        const std::size_t position = stream.position();
        if (stream.lookahead() < minimumMatch) {
            stream.literal();
            continue;
        }
        const auto [length, start] = chains.longest(chains.insert(position), parameters);
        if (length < minimumMatch) {
            stream.literal();
            continue;
        }
        const bool joins = length <= parameters.lazy && stream.lookahead() - length >= minimumMatch;
        if (joins)
            for (std::size_t place = position + 1; place < position + length; ++place)
                chains.insert(place);
        stream.match(length, position - start);
    }
    return stream.finish();
}

std::optional<std::size_t> deflateHuffmanSize(const PngFilteredRows& rows, int memory, int windowBits,
                                              const std::atomic<std::size_t>& limit) {
    Stream stream(rows, memory, windowBits, limit);
    while (stream.provide(1))
        stream.literal();
    return stream.finish();
}

std::optional<std::size_t> deflateRunsSize(const PngFilteredRows& rows, int memory, int windowBits,
                                           const std::atomic<std::size_t>& limit) {
    Stream stream(rows, memory, windowBits, limit);
    while (stream.provide(maximumMatch + 1)) {
        const std::size_t maximum = std::min(maximumMatch, stream.lookahead());
        std::size_t length = 0;
        if (stream.position() > 0) {
            const std::uint8_t* bytes = stream.data() + stream.position();
            while (length < maximum && bytes[length] == bytes[-1])
                ++length;
        }
        if (length >= minimumMatch)
            stream.match(length, 1);
        else
            stream.literal();
    }
    return stream.finish();
}
