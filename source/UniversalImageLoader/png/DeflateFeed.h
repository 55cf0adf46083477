#pragma once

#include "PngFilteredRows.h"

/// Which bytes zlib's deflate has in its window while it is given filtered rows one by one, as libpng does.
/// That decides, in rare cases, which of the oldest bytes a match may still reach. All positions count from
/// the first byte of the rows.
class DeflateFeed {
public:
    /// Bytes that deflate wants to see before it decides about a match.
    static constexpr std::size_t minimumLookahead = 262;

    /// `rows` has to outlive the feed.
    DeflateFeed(const PngFilteredRows& rows, int windowBits);

    /// Farthest distance of a match.
    std::size_t maximumDistance() const { return m_windowSize - minimumLookahead; }

    std::size_t begin() const { return m_begin; } ///< first byte in the window
    std::size_t end() const { return m_end; }     ///< behind the last byte in the window

    /// Called before anything is decided at a position: reads until so many bytes are there, or all.
    void provide(std::size_t position, std::size_t wanted) {
        if (m_end - position < wanted)
            read(position, wanted);
    }

private:
    void read(std::size_t position, std::size_t wanted);
    void fillWindow(std::size_t position);
    void nextRow();

    const PngFilteredRows& m_rows;
    const std::size_t m_windowSize;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::size_t m_rowLeft = 0;
    std::size_t m_pass = 0;
    std::size_t m_row = 0;
    bool m_finishing = false;
};
