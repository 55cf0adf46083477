#include "StartColors.h"

#include "ColorFit.h"

namespace pvrtc {

namespace {

std::uint32_t packedBytes(Float4 color) {
    std::uint32_t bytes = 0;
    for (int channel = 0; channel < 4; ++channel)
        bytes |= static_cast<std::uint32_t>(std::clamp(color[channel] + 0.5F, 0.0F, 255.0F)) << 8 * channel;
    return bytes;
}

PvrtcColorPair storedPair(Float4 low, Float4 high) {
    return nearestPair(toFormatUnits(low), toFormatUnits(high));
}

/// The list of a block's start colours; equal ones once.
void addStart(const PvrtcColorPair& pair, int modes, BlockRecord& record) {
    const std::uint32_t word = pvrtcPackColors(pair);
    const std::uint8_t count = record.keptCount[0];
    if (std::find(record.kept[0], record.kept[0] + count, word) != record.kept[0] + count)
        return;
    for (int mode = 0; mode < modes; ++mode) {
        record.kept[mode][count] = word;
        record.keptCount[mode] = static_cast<std::uint8_t>(count + 1);
    }
}

} // namespace

template <int Bits>
StartEnds analyseFootprint(const PixelWindow<Bits>& window, BlockRecord& record) {
    const FootprintStatistics statistics = footprintStatistics(window);
    record.flat = statistics.flat;
    record.hasTransparency = statistics.transparentPixels > 0;
    StartEnds start{};
    start.ends[StartEnds::ChannelExtremes][0] = packedBytes(statistics.lowest);
    start.ends[StartEnds::ChannelExtremes][1] = packedBytes(statistics.highest);
    if (statistics.flat)
        return start;
    record.basis = statistics.bases[SecondKernel];
    for (int weighting = 0; weighting < WeightingCount; ++weighting) {
        const ColorBasis& basis = statistics.bases[weighting];
        const int main = statistics.mainAxis[weighting];
        const Float4 axis = basis.axes[main];
        // Drawn in a little: the extremes of a footprint are often outliers.
        constexpr float drawnIn = 0.1F;
        const float margin = (basis.highest[main] - basis.lowest[main]) * drawnIn;
        const std::uint32_t first = packedBytes(basis.mean + axis * (basis.lowest[main] + margin));
        const std::uint32_t second = packedBytes(basis.mean + axis * (basis.highest[main] - margin));
        const bool upward = (axis[0] + axis[1]) + (axis[2] + axis[3]) >= 0;
        start.ends[weighting][0] = upward ? first : second;
        start.ends[weighting][1] = upward ? second : first;
    }
    return start;
}

template <int Bits>
void setUpStandardRepStarts(const StartEnds* const (&around)[9], const UniformColors& uniformColors,
                            BlockRecord& record) {
    const StartEnds& own = *around[4];
    std::fill(std::begin(record.keptCount), std::end(record.keptCount), 0);
    record.mode = Bits == 2 ? int{Cross} : int{Standard};
    record.evaluated = record.changed = 0;
    constexpr int modes = modeCount(Bits);
    const std::uint32_t* extremes = own.ends[StartEnds::ChannelExtremes];
    if (record.flat) {
        for (const int level : {3, 5})
            addStart(uniformColors.pair(extremes[0], level), modes, record);
    } else {
        // Low and high lie the same way around in neighbouring blocks: colours between the two blocks blend
        // them.
        Float4 direction{};
        for (const StartEnds* block : around)
            direction += pixelFloats(block->ends[OwnPixels][1]) - pixelFloats(block->ends[OwnPixels][0]);
        for (const int weighting : {OwnPixels, FirstKernel, SecondKernel}) {
            const Float4 low = pixelFloats(own.ends[weighting][0]);
            const Float4 high = pixelFloats(own.ends[weighting][1]);
            const bool turned = dotProduct(high - low, direction) < 0;
            addStart(turned ? storedPair(high, low) : storedPair(low, high), modes, record);
        }
    }
    addStart(storedPair(pixelFloats(extremes[0]), pixelFloats(extremes[1])), modes, record);
    record.colors = pvrtcUnpackColors(record.kept[0][0]);
}

template StartEnds analyseFootprint<2>(const PixelWindow<2>&, BlockRecord&);
template StartEnds analyseFootprint<4>(const PixelWindow<4>&, BlockRecord&);
template void setUpStandardRepStarts<2>(const StartEnds* const (&)[9], const UniformColors&, BlockRecord&);
template void setUpStandardRepStarts<4>(const StartEnds* const (&)[9], const UniformColors&, BlockRecord&);

} // namespace pvrtc
