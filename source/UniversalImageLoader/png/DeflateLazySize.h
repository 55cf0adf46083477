#pragma once

#include "DeflateBlocks.h"
#include "DeflateFeed.h"
#include "DeflateLevel.h"
#include "DeflateMatches.h"

/// Follows zlib's deflate at one of the levels 4 to 9 with strategy 0 or 1 through the rows, to tell the size
/// of what it would write. For one thread.
class DeflateLazySize {
public:
    /// `rank`: which rank of the matches is that of the memory level. `rows` has to outlive this.
    DeflateLazySize(const PngFilteredRows& rows, int level, int memory, bool isFiltered, int windowBits,
                    std::size_t rank);

    /// Goes on up to a position, the end of what `matches` has ready.
    void run(DeflateMatches& matches, std::size_t until);

    /// True when the size is final.
    bool isFinished() const { return m_finished; }

    /// Bytes of the stream as far as it is known; it never shrinks.
    std::size_t streamBytes() const { return m_blocks.streamBytes(); }

private:
    struct Match {
        std::size_t length = noMatch;
        std::size_t start = 0;
    };

    static constexpr std::size_t noMatch = 2;

    Match search(DeflateMatches& matches, std::size_t known) const;
    void closeBlock(bool isLast);
    void finish();

    const std::uint8_t* const m_data;
    const std::size_t m_size;
    const DeflateLevel& m_level;
    const bool m_isFiltered;
    const std::size_t m_rank;
    DeflateFeed m_feed;
    DeflateBlocks m_blocks;
    std::size_t m_position = 0;
    std::size_t m_blockStart = 0;
    Match m_match;
    bool m_hasLiteral = false; // the byte before the position waits for what is found at the position
    bool m_finished = false;
};
