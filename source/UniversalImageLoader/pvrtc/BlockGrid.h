#pragma once

#include "PvrtcFormat.h"
#include "Simd.h"

#include <cstddef>
#include <memory>

namespace pvrtc {

/// Modes of a block as the search numbers them from 0 on. With 4 bits a pixel: the standard one and
/// punch-through.
enum FourBitMode { Standard, PunchThrough };
/// With 2 bits a pixel: one stored bit for every pixel, or two bits for every second one and the others
/// interpolated from their four neighbours, those beside them or those above and below.
enum TwoBitMode { OneBit, Cross, Across, Down };

constexpr int modeCount(int bits) { return bits == 2 ? 4 : 2; }
inline constexpr int mostModes = 4;

/// Pairs of colours that the search keeps of each mode from one pass to the next.
inline constexpr int keptCandidates = 4;

/// A basis of orthogonal axes in the space of red, green, blue and alpha (0 to 255), and what the pixels take
/// up of it.
struct ColorBasis {
    Float4 mean;
    Float4 axes[4];
    Float4 lowest; ///< along each axis, from the mean
    Float4 highest;
};

/// What the search knows of a block.
struct BlockRecord {
    ColorBasis basis;                              ///< nothing if the footprint is flat
    std::uint32_t kept[mostModes][keptCandidates]; ///< as pvrtcPackColors makes them, best first
    std::uint8_t keptCount[mostModes];
    PvrtcColorPair colors;
    std::uint8_t mode;
    bool flat;              ///< all pixels of the footprint are equal
    bool fewRegions;        ///< the region map of its footprint serves in early passes
    bool hasTransparency;   ///< fully transparent pixels are in the footprint
    std::uint8_t evaluated; ///< stamps of sweeps
    std::uint8_t changed;
};

/// The records of all blocks. Neighbours wrap around at all edges.
class BlockGrid {
public:
    BlockGrid(int columns, int rows)
        : m_columns(columns), m_rows(rows),
          m_records(std::make_unique_for_overwrite<BlockRecord[]>(static_cast<std::size_t>(columns) * rows)) {
    }

    int columns() const { return m_columns; }
    int rows() const { return m_rows; }

    /// `column` and `row` may lie one outside.
    BlockRecord& at(int column, int row) { return m_records[index(column, row)]; }
    const BlockRecord& at(int column, int row) const { return m_records[index(column, row)]; }

private:
    std::size_t index(int column, int row) const {
        return static_cast<std::size_t>(wrapped(row, m_rows)) * m_columns + wrapped(column, m_columns);
    }
    static int wrapped(int place, int count) { return place < 0 ? count - 1 : place >= count ? 0 : place; }

    int m_columns;
    int m_rows;
    std::unique_ptr<BlockRecord[]> m_records;
};

} // namespace pvrtc
