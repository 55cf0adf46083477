#pragma once

#include "FootprintScore.h"

namespace pvrtc {

/// Passes over the picture.
inline constexpr int passCount = 8;

/// What the settings of a pass are, counted from 0 on.
struct PassSettings {
    explicit PassSettings(int pass)
        : first(pass == 0), everyBlock(pass == 0 || pass == 1 || pass == 4), clampsLines(pass < 4),
          usesRegions(pass >= 1 && pass <= 3), chooseJointly(pass >= 4) {}

    bool first;         ///< candidates are scored, not refined, and no new ones made
    bool everyBlock;    ///< also blocks around which nothing has changed
    bool clampsLines;   ///< new candidates stay inside the extents of the footprint's pixels
    bool usesRegions;   ///< blocks with few regions choose modulation by region
    bool chooseJointly; ///< stored 2-bit levels are chosen with what is interpolated from them
};

/// Finds better colours and modes of blocks, one at a time, with those around as they are. One object a
/// thread.
template <int Bits>
class BlockSearch {
public:
    BlockSearch(const WorkingImage& image, BlockGrid& grid);

    /// Reads the records of the 3 x 3 blocks around, and writes that of the block alone. `stamp` rises by 1
    /// with each sweep.
    void optimiseRegion(int column, int row, const PassSettings& pass, std::uint8_t stamp);

private:
    static constexpr int refinementSteps = 4;
    static constexpr int lineCount = 10;
    static constexpr int mostCandidates = keptCandidates + lineCount;
    static constexpr int mostTried = modeCount(Bits) * mostCandidates * refinementSteps;

    /// A pair that has been scored.
    struct Tried {
        PvrtcColorPair colors;
        unsigned modes; ///< bit set of those it has been scored in
        Score scores[modeCount(Bits)];
    };
    /// A candidate as it is listed, before its refinement.
    struct Start {
        const Tried* tried;
        int mode;
    };
    struct Candidate {
        PvrtcColorPair colors;
        std::int32_t error;
    };
    /// The best different candidates of a mode, by error.
    struct CandidateList {
        void add(const Candidate& candidate);

        int count;
        Candidate entries[keptCandidates];
    };

    bool isUpToDate(int column, int row) const;
    void prepare(int column, int row, const PassSettings& pass);
    void listKept(const BlockRecord& record, int mode);
    void listLines(const BlockRecord& record);
    Candidate refined(const Start& start);
    Tried& tried(const PvrtcColorPair& colors);
    void score(Tried& tried, unsigned modes);
    bool isFarBehind(std::int32_t error, int mode) const;
    bool isHopeless(std::int32_t error, int mode) const;
    bool update(BlockRecord& record) const;

    const WorkingImage& m_image;
    BlockGrid& m_grid;
    FootprintScorer<Bits> m_scorer;
    const PassSettings* m_pass = nullptr;
    Footprint<Bits> m_footprint;
    RegionMasks<Bits> m_regions;
    bool m_usesRegions = false;
    int m_ownMode = 0;
    std::int32_t m_bestError = 0;
    std::int32_t m_bestOfMode[modeCount(Bits)];
    int m_startCount = 0;
    Start m_starts[modeCount(Bits) * mostCandidates];
    CandidateList m_found[modeCount(Bits)];
    int m_triedCount = 0;
    Tried m_tried[mostTried];
    /// Places in m_tried, by a hash of the colours; the next free one if that is taken.
    static constexpr std::uint8_t emptySlot = 255;
    static_assert(mostTried < emptySlot);
    std::uint8_t m_slots[256];
};

} // namespace pvrtc
