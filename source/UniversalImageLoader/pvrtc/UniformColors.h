#pragma once

#include "PvrtcFormat.h"

namespace pvrtc {

/// Pairs of colours for areas of one colour, by way of a level between them: they come nearer to most colours
/// than any colour that the format stores.
class UniformColors {
public:
    UniformColors();

    /// The pair for red, green, blue, alpha whose blend at `level` eighths (3 or 5) is nearest, of those that
    /// are both opaque or both not.
    PvrtcColorPair pair(std::uint32_t color, int level) const;

private:
    /// Field sizes of low and high colour that go together in a channel.
    enum Fields { FiveAndFive, FourAndFive, FourAndFour, ThreeAndFour, Alpha, FieldsCount };
    struct Ends {
        std::uint8_t low;
        std::uint8_t high;
    };
    static Ends bestEnds(int value, int level, Fields fields);

    Ends m_ends[2][FieldsCount][256]; ///< by level 3 and 5
};

} // namespace pvrtc
