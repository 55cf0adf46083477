#include "SizeSearch.h"

#include "AlgorithmBasicSettings.h"
#include "AlgorithmMaxRectsSettings.h"
#include "AlgorithmSettings.h"
#include "Error.h"
#include "SaturatedMath.h"
#include "SideBySide.h"
#include "Sprite.h"

#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <optional>
#include <tuple>

namespace {

using AlgorithmId = AlgorithmSettings::AlgorithmId;
using FreeSizeMode = AlgorithmSettings::AlgorithmFreeSizeMode;

/// Level of the progress of inner steps.
constexpr int progressLevel = 2;

/// The sides that the coarse search tries: doubled from the smallest one, and the largest.
QList<int> coarseSides(int fixed, int maximum) {
    const qint64 first = fixed > 0 ? fixed : 1;
    const qint64 last = fixed > 0 ? fixed : maximum;
    QList<int> sides;
    for (qint64 side = first; side < last; side *= 2)
        sides.append(static_cast<int>(side));
    sides.append(static_cast<int>(last));
    return sides;
}

qint64 areaOf(QSize size) { return qint64{size.width()} * size.height(); }

bool isBefore(QSize a, QSize b) {
    const auto key = [](QSize size) {
        return std::tuple(qint64{size.width()} + size.height(), size.width());
    };
    return key(a) < key(b);
}

qint64 usedArea(const PackedTexture& texture) {
    return saturated::add(texture.area(), saturated::multiply(-1, texture.freeArea()));
}

/// The lengths that are tried for one side while the other is kept: a bisection, and where it comes to a
/// length for the second time, steps of one pixel from there.
class ShrinkingSide {
public:
    ShrinkingSide(qint64 low, qint64 high, int roundUp) : m_low(low), m_high(high), m_roundUp(roundUp) {}

    /// The next length; none if there is nothing left to try.
    std::optional<int> next() {
        m_current = m_bisects ? (m_low + m_roundUp + m_high) / 2 : m_current - 1;
        if (m_tried.contains(m_current)) {
            if (!m_bisects)
                return std::nullopt;
            m_bisects = false;
        }
        m_tried.append(m_current);
        return saturated::toInt(m_current);
    }

    /// Takes in whether the length made a better sheet. False if no shorter one is worth a try.
    bool take(bool isBetter) {
        (isBetter ? m_high : m_low) = m_current;
        return isBetter || m_bisects;
    }

private:
    qint64 m_low;
    qint64 m_high;
    int m_roundUp;
    qint64 m_current = 0;
    bool m_bisects = true;
    QList<qint64> m_tried;
};

} // namespace

PackerParameters parametersFor(const SizeSearchInput& input) {
    PackerParameters parameters;
    parameters.setAllowRotation(input.allowRotation);
    parameters.setSizeConstraints(input.sizeConstraints);
    parameters.setForceSquared(input.forceSquared);
    parameters.setForceWordAligned(input.forceWordAligned);
    parameters.setBorderPadding(input.borderPadding);
    parameters.setShapePadding(input.shapePadding);
    parameters.setSprites(input.sprites);
    parameters.setAlgorithmSettings(input.algorithmSettings);
    return parameters;
}

SizeSearch::SizeSearch(const SizeSearchInput& input, const Callbacks& callbacks)
    : m_input(input), m_callbacks(callbacks), m_attempts(parametersFor(input), callbacks.attempt) {}

PackedResult SizeSearch::run() {
    const PackedResult best = searchCoarse();
    return isPot() ? best : shrinkBoth(best);
}

bool SizeSearch::isPot() const {
    return m_input.sizeConstraints == static_cast<int>(AlgorithmSettings::SizeConstraints::POT);
}

PackedResult SizeSearch::searchCoarse() {
    const SizesByArea sizesByArea = coarseSizes();
    m_attempts.setFirstFitWins(false);
    // Where some size holds all sprites, it doesn't matter how much the others hold.
    const bool completeOnly = lookAhead(sizesByArea);
    PackedResult best;
    for (const auto& [area, sizes] : sizesByArea)
        if ((!best.isEmpty() && best.allPlaced()) || !attemptSizes(sizes, completeOnly, best))
            break;
    if (!best.textures().isEmpty())
        reportBest(best);
    return best;
}

/// The sizes to try; of equal areas the squarest first, and of equal ones the narrower.
SizeSearch::SizesByArea SizeSearch::coarseSizes() const {
    SizesByArea sizesByArea;
    const qint64 spriteArea = m_attempts.spriteArea();
    for (int width : coarseSides(m_input.fixedSize.width(), m_input.maxSize.width())) {
        for (int height : coarseSides(m_input.fixedSize.height(), m_input.maxSize.height())) {
            if (m_input.forceSquared && width != height)
                continue;
            const QSize size = normalizeSize({width, height});
            if (size.isEmpty() || usableArea(size) < spriteArea)
                continue;
            QList<QSize>& sizes = sizesByArea[areaOf(size)];
            if (!sizes.contains(size))
                sizes.append(size);
        }
    }
    // Not all sprites can fit: the largest sheet holds what it can.
    if (sizesByArea.empty()) {
        const QSize size = normalizeSize(m_input.maxSize);
        sizesByArea[areaOf(size)].append(size);
    }
    for (auto& [area, sizes] : sizesByArea)
        std::stable_sort(sizes.begin(), sizes.end(), isBefore);
    return sizesByArea;
}

qint64 SizeSearch::usableArea(QSize size) const {
    const qint64 margin = qint64{m_input.shapePadding} - 2 * qint64{m_input.borderPadding};
    return saturated::multiply(size.width() + margin, size.height() + margin);
}

/// Makes the attempts ahead that the coarse search needs. True if one of the sizes holds all sprites.
bool SizeSearch::lookAhead(const SizesByArea& sizesByArea) {
    for (const auto& [area, sizes] : sizesByArea) {
        // When not even the largest sizes hold all, it matters what they hold.
        const bool isLast = area == sizesByArea.rbegin()->first;
        if (tryAhead(sizes, !isLast))
            return true;
    }
    for (const auto& [area, sizes] : sizesByArea)
        tryAhead(sizes, false);
    return false;
}

/// Makes the attempts of one area ahead. True if one of them holds all sprites.
bool SizeSearch::tryAhead(const QList<QSize>& sizes, bool completeOnly) {
    std::atomic<bool> holdsAll = false;
    const auto tryOne = [&](size_t number) {
        // Of sizes with equal area, powers of two take the first that holds everything.
        if (m_callbacks.aborted() || (isPot() && holdsAll))
            return;
        const PackedResult result = attempt(sizes[static_cast<int>(number)], completeOnly, Turn::Ahead);
        if (!result.isEmpty() && result.allPlaced())
            holdsAll = true;
    };
    const auto count = static_cast<size_t>(sizes.size());
    if (!isPot()) {
        sideBySide(count, tryOne);
    } else {
        for (size_t number = 0; number < count; ++number)
            tryOne(number);
    }
    return holdsAll;
}

/// Makes the attempts of one area in their turn. False if the search was aborted before their end.
bool SizeSearch::attemptSizes(const QList<QSize>& sizes, bool completeOnly, PackedResult& best) {
    for (QSize size : sizes) {
        if (!goesOn(size, completeOnly, Turn::Own))
            return false;
        const PackedResult result = attempt(size, completeOnly, Turn::Own);
        if (result.isBetterThan(best))
            best = result;
        if (isPot() && !best.isEmpty() && best.allPlaced())
            break;
    }
    return true;
}

/// An aborted search makes no more attempts, but what was made ahead is in its hands, too.
bool SizeSearch::goesOn(QSize size, bool completeOnly, Turn turn) const {
    return !m_callbacks.aborted() || (turn == Turn::Own && m_attempts.isMadeAhead(size, completeOnly));
}

PackedResult SizeSearch::attempt(QSize size, bool completeOnly, Turn turn) {
    return turn == Turn::Own ? m_attempts.make(size, completeOnly) : m_attempts.makeAhead(size, completeOnly);
}

void SizeSearch::reportBest(const PackedResult& result) const {
    const PackedTexture& texture = result.textures().first();
    m_callbacks.activity(
        progressLevel,
        QStringLiteral("Best result: %1x%2. Optimizing...").arg(texture.width()).arg(texture.height()));
}

float SizeSearch::freeThreshold() const {
    switch (m_input.algorithmSettings->freeSizeMode()) {
    case FreeSizeMode::Fast:
        return 0.2F;
    case FreeSizeMode::Good:
        return 0.02F;
    default:
        return 0.0F;
    }
}

bool SizeSearch::triesAllHeuristics() const {
    const AlgorithmSettings& settings = *m_input.algorithmSettings;
    if (settings.algorithm() == AlgorithmId::Basic)
        return settings.basic()->sortBy() == AlgorithmBasicSettings::SortBy::Best;
    return settings.maxRects()->heuristic() == AlgorithmMaxRectsSettings::Heuristic::Best;
}

PackedResult SizeSearch::shrinkBoth(const PackedResult& coarse) {
    const float threshold = freeThreshold();
    m_callbacks.activity(progressLevel, QStringLiteral("Optimizing free space"));
    // From here on only fitting counts.
    if (triesAllHeuristics())
        m_attempts.setFirstFitWins(true);
    shrinkAhead(coarse, threshold);
    PackedResult best = coarse;
    const PackedResult widthFirst = shrink(best, Order::WidthFirst, threshold, Turn::Own);
    if (threshold < widthFirst.freeRatio()) {
        const PackedResult heightFirst = shrink(best, Order::HeightFirst, threshold, Turn::Own);
        if (heightFirst.isBetterThan(best))
            best = heightFirst;
    }
    if (widthFirst.isBetterThan(best))
        best = widthFirst;
    return best;
}

/// Makes the attempts of both orders ahead, side by side. Only without a threshold: else the first order is
/// mostly enough.
void SizeSearch::shrinkAhead(const PackedResult& coarse, float threshold) {
    constexpr Order orders[] = {Order::WidthFirst, Order::HeightFirst};
    const int threads = QThreadPool::globalInstance()->maxThreadCount();
    if (threshold > 0 || threads < 2)
        return;
    m_attempts.setSideBySide(threads >= 4);
    sideBySide(std::size(orders), [&](size_t number) {
        try {
            shrink(coarse, orders[number], threshold, Turn::Ahead);
        } catch (const Error&) {
            // Comes again in its turn, if that comes at all.
        }
    });
    m_attempts.setSideBySide(true);
}

PackedResult SizeSearch::shrink(const PackedResult& result, Order order, float threshold, Turn turn) {
    if (order == Order::WidthFirst)
        return shrink(shrink(result, Side::Width, threshold, turn), Side::Height, threshold, turn);
    return shrink(shrink(result, Side::Height, threshold, turn), Side::Width, threshold, turn);
}

PackedResult SizeSearch::shrink(const PackedResult& result, Side side, float threshold, Turn turn) {
    if (result.textures().isEmpty() || result.textures().first().size().isEmpty())
        return result;
    const PackedTexture texture = result.textures().first();
    const bool isWidth = side == Side::Width;
    const int kept = isWidth ? texture.height() : texture.width();
    // The two directions have always rounded their middle in different ways, and sheets are compared byte for
    // byte.
    ShrinkingSide sides(qint64{saturated::toInt(usedArea(texture) / kept)} - 1,
                        isWidth ? texture.width() : texture.height(), isWidth ? 0 : 1);
    PackedResult current = result;
    while (!(threshold > current.freeRatio())) {
        const std::optional<int> shrunk = sides.next();
        if (!shrunk)
            break;
        const QSize size = normalizeSize(isWidth ? QSize(*shrunk, kept) : QSize(kept, *shrunk));
        // No partial layout is better than a complete one.
        const bool completeOnly = current.allPlaced();
        if (!goesOn(size, completeOnly, turn))
            break;
        const PackedResult shrunkResult = attempt(size, completeOnly, turn);
        const bool isBetter = shrunkResult.isBetterThan(current);
        if (isBetter) {
            current = shrunkResult;
            if (turn == Turn::Own)
                reportBest(current);
        }
        if (!sides.take(isBetter))
            break;
    }
    return current;
}
