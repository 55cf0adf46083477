#include "BlockSearch.h"

#include "ColorFit.h"
#include "RegionMap.h"

#include <bit>
#include <limits>

namespace pvrtc {

namespace {

constexpr std::int32_t worstError = std::numeric_limits<std::int32_t>::max();

/// Where new candidates have their two colours on the line from the low to the high one.
constexpr float linePlaces[][2] = {{-0.25F, 1.25F},  {-0.5F, 1.0F},  {0.0F, 1.5F},   {0.0F, 0.125F},
                                   {0.875F, 1.0F},   {0.0F, 0.625F}, {0.375F, 1.0F}, {1.0F, 0.0F},
                                   {0.375F, 0.625F}, {0.75F, 0.25F}};

bool isEqual(const PvrtcColorPair& a, const PvrtcColorPair& b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

/// How far candidates may lie behind the best one, in eighths of its error.
struct Patience {
    int toBeRefined; ///< in the block's own mode
    int toBeRefinedInOtherMode;
    int toTryMode;       ///< the best that was kept of another mode
    int toChooseJointly; ///< which seldom gains more
};

/// Most of a picture's error is in few blocks: those are worth more.
constexpr Patience patience(std::int32_t bestError) {
    return bestError > 16384 ? Patience{16, 10, 11, 9} : Patience{10, 9, 9, 9};
}

bool isBehind(std::int32_t error, std::int32_t best, int eighths) {
    return std::int64_t{error} * 8 > std::int64_t{best} * eighths;
}

/// The line through a pair of colours.
class ColorLine {
public:
    explicit ColorLine(const PvrtcColorPair& colors)
        : m_low(fromFormatUnits(ColorFloats(colors).colors[0])),
          m_span(fromFormatUnits(ColorFloats(colors).colors[1]) - m_low) {}

    /// Points outside the extents of a basis are clamped to them from now on.
    void clampTo(const ColorBasis& basis) {
        m_basis = &basis;
        for (int axis = 0; axis < 4; ++axis) {
            m_lowPlace[axis] = dotProduct(m_low - basis.mean, basis.axes[axis]);
            m_spanPlace[axis] = dotProduct(m_span, basis.axes[axis]);
        }
    }

    PvrtcColorPair pair(const float (&places)[2]) const {
        return nearestPair(toFormatUnits(at(places[0])), toFormatUnits(at(places[1])));
    }

private:
    Float4 at(float place) const {
        if (m_basis == nullptr)
            return m_low + m_span * place;
        const Float4 free = m_lowPlace + m_spanPlace * place;
        const Float4 above = free < m_basis->lowest ? m_basis->lowest : free;
        const Float4 inside = above > m_basis->highest ? m_basis->highest : above;
        return m_basis->mean + (m_basis->axes[0] * inside[0] + m_basis->axes[1] * inside[1]) +
               (m_basis->axes[2] * inside[2] + m_basis->axes[3] * inside[3]);
    }

    Float4 m_low;
    Float4 m_span;
    const ColorBasis* m_basis = nullptr;
    Float4 m_lowPlace{};
    Float4 m_spanPlace{};
};

template <int Bits>
void loadRegions(const PixelWindow<Bits>& window, RegionMasks<Bits>& masks) {
    using Lanes = Footprint<Bits>;
    const RegionMap<Bits> map(window);
    int sizes[RegionMasks<Bits>::most] = {};
    const auto regionOf = [&](int lane) { return map.regions[Lanes::windowY(lane)][Lanes::windowX(lane)]; };
    constexpr int lanes = Lanes::rows * Lanes::rowLanes;
    for (int lane = 0; lane < lanes; ++lane)
        ++sizes[regionOf(lane)];
    masks.count = 0;
    for (int region = 0; region < map.count; ++region) {
        if (sizes[region] < 2)
            continue;
        std::int32_t* mask = masks.masks[masks.count++];
        for (int lane = 0; lane < Lanes::lanes; ++lane)
            mask[lane] = lane < lanes && regionOf(lane) == region ? -1 : 0;
    }
}

} // namespace

template <int Bits>
void BlockSearch<Bits>::CandidateList::add(const Candidate& candidate) {
    for (int place = 0; place < count; ++place)
        if (isEqual(entries[place].colors, candidate.colors))
            return;
    if (count == keptCandidates && entries[count - 1].error <= candidate.error)
        return;
    int place = count < keptCandidates ? count++ : count - 1;
    for (; place > 0 && entries[place - 1].error > candidate.error; --place)
        entries[place] = entries[place - 1];
    entries[place] = candidate;
}

template <int Bits>
BlockSearch<Bits>::BlockSearch(const WorkingImage& image, BlockGrid& grid)
    : m_image(image), m_grid(grid), m_scorer(footprintScorer<Bits>()) {}

template <int Bits>
void BlockSearch<Bits>::optimiseRegion(int column, int row, const PassSettings& pass, std::uint8_t stamp) {
    if (!pass.everyBlock && isUpToDate(column, row))
        return;
    prepare(column, row, pass);
    BlockRecord& record = m_grid.at(column, row);
    listKept(record, m_ownMode);
    for (int mode = 0; mode < modeCount(Bits); ++mode)
        if (mode != m_ownMode)
            listKept(record, mode);
    if (!pass.first)
        listLines(record);
    for (int number = 0; number < m_startCount; ++number)
        m_found[m_starts[number].mode].add(refined(m_starts[number]));
    if (update(record) || pass.first)
        record.changed = stamp;
    record.evaluated = stamp;
}

/// Whether nothing has changed around the block since it was evaluated.
template <int Bits>
bool BlockSearch<Bits>::isUpToDate(int column, int row) const {
    const std::uint8_t evaluated = m_grid.at(column, row).evaluated;
    for (int y = -1; y <= 1; ++y)
        for (int x = -1; x <= 1; ++x)
            if ((x != 0 || y != 0) && m_grid.at(column + x, row + y).changed >= evaluated)
                return false;
    return true;
}

template <int Bits>
void BlockSearch<Bits>::prepare(int column, int row, const PassSettings& pass) {
    const BlockRecord& record = m_grid.at(column, row);
    const PixelWindow<Bits> window(m_image, column, row);
    m_pass = &pass;
    m_footprint.load(window, m_grid, column, row);
    m_usesRegions = pass.usesRegions && record.fewRegions;
    if (m_usesRegions)
        loadRegions(window, m_regions);
    m_ownMode = record.mode;
    m_bestError = worstError;
    std::fill(std::begin(m_bestOfMode), std::end(m_bestOfMode), worstError);
    m_startCount = 0;
    m_triedCount = 0;
    std::fill(std::begin(m_slots), std::end(m_slots), emptySlot);
    for (CandidateList& list : m_found)
        list.count = 0;
}

/// Lists what was kept of a mode. If even its best is far behind another mode, that is all, and the mode is
/// left alone.
template <int Bits>
void BlockSearch<Bits>::listKept(const BlockRecord& record, int mode) {
    // A pair without any error ends the search: nothing can be better.
    for (int index = 0; index < record.keptCount[mode] && m_bestError > 0; ++index) {
        Tried& entry = tried(pvrtcUnpackColors(record.kept[mode][index]));
        score(entry, 1U << mode);
        if (index == 0 && isFarBehind(entry.scores[mode].error, mode))
            return;
        m_starts[m_startCount++] = {&entry, mode};
    }
}

/// Lists new candidates around the current pair for all modes that aren't left alone.
template <int Bits>
void BlockSearch<Bits>::listLines(const BlockRecord& record) {
    unsigned modes = 0;
    for (int mode = 0; mode < modeCount(Bits); ++mode) {
        // Without a transparent pixel punch-through has but three levels to set against four: it lives on
        // what it has.
        const bool fits = Bits == 2 || mode == Standard || record.hasTransparency;
        if (fits && m_bestOfMode[mode] != worstError && !isFarBehind(m_bestOfMode[mode], mode))
            modes |= 1U << mode;
    }
    ColorLine line(record.colors);
    if (m_pass->clampsLines && !record.flat)
        line.clampTo(record.basis);
    for (const auto& places : linePlaces) {
        if (m_bestError == 0)
            return;
        Tried& entry = tried(line.pair(places));
        const unsigned newModes = modes & ~entry.modes;
        if (newModes == 0)
            continue;
        score(entry, newModes);
        for (int mode = 0; mode < modeCount(Bits); ++mode)
            if ((newModes >> mode & 1U) != 0)
                m_starts[m_startCount++] = {&entry, mode};
    }
}

/// The best pair met on the way from a start by least squares and quantisation.
template <int Bits>
typename BlockSearch<Bits>::Candidate BlockSearch<Bits>::refined(const Start& start) {
    const int mode = start.mode;
    const Tried* here = start.tried;
    Candidate best{here->colors, here->scores[mode].error};
    if (m_pass->first || isHopeless(best.error, mode))
        return best;
    for (int step = 1; step < refinementSteps; ++step) {
        Tried& next = tried(leastSquaresColors<Bits>(here->colors, here->scores[mode]));
        // The same pair again, or one from where another candidate has gone on.
        if ((next.modes >> mode & 1U) != 0)
            break;
        score(next, 1U << mode);
        if (next.scores[mode].error < best.error)
            best = {next.colors, next.scores[mode].error};
        here = &next;
    }
    return best;
}

/// Whether a mode other than the block's own won't win with this error.
template <int Bits>
bool BlockSearch<Bits>::isFarBehind(std::int32_t error, int mode) const {
    return mode != m_ownMode && !m_pass->first &&
           isBehind(error, m_bestError, patience(m_bestError).toTryMode);
}

/// Whether a candidate isn't worth refining. Nothing gets better than a pair without any error.
template <int Bits>
bool BlockSearch<Bits>::isHopeless(std::int32_t error, int mode) const {
    const Patience limits = patience(m_bestError);
    return m_bestError == 0 ||
           (mode == m_ownMode ? isBehind(error, m_bestOfMode[mode], limits.toBeRefined)
                              : isBehind(error, m_bestError, limits.toBeRefinedInOtherMode));
}

/// The entry of a pair, a new one if there is none yet.
template <int Bits>
typename BlockSearch<Bits>::Tried& BlockSearch<Bits>::tried(const PvrtcColorPair& colors) {
    const auto key = std::bit_cast<std::uint64_t>(colors);
    auto slot = static_cast<std::uint8_t>(key * 0x9E3779B97F4A7C15U >> 56U);
    for (; m_slots[slot] != emptySlot; ++slot)
        if (isEqual(m_tried[m_slots[slot]].colors, colors))
            return m_tried[m_slots[slot]];
    m_slots[slot] = static_cast<std::uint8_t>(m_triedCount);
    Tried& entry = m_tried[m_triedCount++];
    entry.colors = colors;
    entry.modes = 0;
    return entry;
}

/// Scores a pair in modes that it hasn't been scored in.
template <int Bits>
void BlockSearch<Bits>::score(Tried& tried, unsigned modes) {
    ScoreRequest<Bits> request{};
    store(&request.colors, loadBytes(&tried.colors));
    request.modes = modes;
    request.regions = m_usesRegions ? &m_regions : nullptr;
    request.jointLimit =
        m_pass->chooseJointly ? std::int64_t{m_bestError} * patience(m_bestError).toChooseJointly / 8 : -1;
    m_scorer(m_footprint, request, tried.scores);
    tried.modes |= modes;
    for (int mode = 0; mode < modeCount(Bits); ++mode)
        if ((modes >> mode & 1U) != 0) {
            m_bestOfMode[mode] = std::min(m_bestOfMode[mode], tried.scores[mode].error);
            m_bestError = std::min(m_bestError, tried.scores[mode].error);
        }
}

/// Sets what was found; returns whether mode or colours changed.
template <int Bits>
bool BlockSearch<Bits>::update(BlockRecord& record) const {
    int best = m_ownMode;
    for (int mode = 0; mode < modeCount(Bits); ++mode) {
        const CandidateList& found = m_found[mode];
        if (found.count == 0)
            continue;
        for (int index = 0; index < found.count; ++index)
            record.kept[mode][index] = pvrtcPackColors(found.entries[index].colors);
        record.keptCount[mode] = static_cast<std::uint8_t>(found.count);
        if (m_found[best].count == 0 || found.entries[0].error < m_found[best].entries[0].error)
            best = mode;
    }
    const PvrtcColorPair& colors = m_found[best].entries[0].colors;
    if (best == record.mode && isEqual(colors, record.colors))
        return false;
    record.mode = static_cast<std::uint8_t>(best);
    record.colors = colors;
    return true;
}

template class BlockSearch<2>;
template class BlockSearch<4>;

} // namespace pvrtc
