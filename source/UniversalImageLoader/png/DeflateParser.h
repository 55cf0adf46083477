#pragma once

#include "DeflateCosts.h"
#include "PlaceChains.h"

/// How many places are looked at for a match.
struct DeflateEffort {
    int places;    ///< with the first bytes in common
    int runPlaces; ///< where a run of bytes ends as here
};

/// Finds the symbols that a deflate stream says bytes with. Of the matches at a place it takes the one that
/// saves most bits, by what symbols cost of late, and waits a byte where the next place has a better one.
/// Among filtered rows that beats a search for the longest match, and takes a tenth of its time: short
/// matches far away, which are most of what there is to find, save nothing there.
class DeflateParser {
public:
    /// Bytes that may be read behind `end`, whatever they are.
    static constexpr std::size_t readable = 16;

    /// Symbols are made for the bytes from `begin` on; matches may reach back to the first of `bytes`.
    DeflateParser(const std::uint8_t* bytes, std::size_t begin, std::size_t end, const DeflateEffort& effort);

    /// Makes the symbols of the next block. False if there is nothing left.
    bool nextBlock(DeflateSymbols& block);

private:
    static constexpr std::size_t shortestMatch = 5;
    static constexpr std::size_t lazyLimit = 64; ///< a match of that length isn't given up for a better one
    static constexpr std::size_t longMatch = 32;
    static constexpr std::size_t firstLearning = 1 << 7;
    static constexpr std::size_t lastLearning = 1 << 13;
    static constexpr int patience = 8; ///< so many places without a match halve what the next ones are worth
    static constexpr int noise = 128;  ///< after so many of them a search is worth while at few places only
    static constexpr std::size_t noiseStep = 8;
    static constexpr std::size_t runTail = 3; ///< bytes of a run that count with what follows it

    struct Match {
        std::size_t length = 0;
        std::size_t distance = 0;
        int gain = 0; ///< against literals
    };

    struct Search;

    std::size_t hash(std::size_t position) const;
    void insert(std::size_t position);
    bool find(std::size_t position, Match& match);
    bool repeats(std::size_t position, std::size_t distance) const;
    void add(DeflateSymbols& block, std::size_t length, std::size_t value);
    void takeMatch(DeflateSymbols& block, Match match);

    const std::uint8_t* m_bytes;
    std::size_t m_position;
    const std::size_t m_end;
    const DeflateEffort m_effort;
    int m_misses = 0;                       ///< places without a match since the last one
    std::size_t m_learnt = 0;               ///< symbols of the block that costs were taken from
    std::size_t m_learning = firstLearning; ///< how many more make it worth while again
    DeflateCosts m_costs;
    std::array<std::size_t, 2> m_recent = {1, 4}; ///< distances of the last matches
    PlaceChains m_chains;                         ///< by as many bytes as the shortest match has
};
