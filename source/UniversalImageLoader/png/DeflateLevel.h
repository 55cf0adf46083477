#pragma once

#include <cstddef>

/// How hard zlib's deflate looks for matches at a level, and what that means for a stream.
struct DeflateLevel {
    std::size_t good; ///< with a match of that length at hand only a quarter of the chain is looked at
    std::size_t lazy; ///< with a match of that length at hand no better one is looked for; at the levels 1 to
                      ///< 3 the longest match whose places all join the chains
    std::size_t nice; ///< a match of that length ends the search
    unsigned chain;   ///< places of the chain that are looked at

    /// Of level 1 to 9.
    static const DeflateLevel& of(int level);

    /// Levels from here on look whether the next place has a longer match before they take one.
    static constexpr int firstLazy = 4;
};
