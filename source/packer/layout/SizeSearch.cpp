#include "SizeSearch.h"

#include "AlgorithmBasicSettings.h"
#include "AlgorithmMaxRectsSettings.h"
#include "AlgorithmSettings.h"
#include "SaturatedMath.h"
#include "Sprite.h"

#include <algorithm>
#include <map>
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

} // namespace

SizeSearch::SizeSearch(const SizeSearchInput& input, const Callbacks& callbacks)
    : m_input(input), m_callbacks(callbacks) {
    m_parameters.setAllowRotation(input.allowRotation);
    m_parameters.setSizeConstraints(input.sizeConstraints);
    m_parameters.setForceSquared(input.forceSquared);
    m_parameters.setForceWordAligned(input.forceWordAligned);
    m_parameters.setBorderPadding(input.borderPadding);
    m_parameters.setShapePadding(input.shapePadding);
    m_parameters.setSprites(input.sprites);
    m_parameters.setAlgorithmSettings(input.algorithmSettings);
}

PackedResult SizeSearch::run() {
    const PackedResult best = searchCoarse();
    if (m_input.sizeConstraints == static_cast<int>(AlgorithmSettings::SizeConstraints::POT))
        return best;
    return shrinkBoth(best);
}

PackedResult SizeSearch::searchCoarse() {
    std::map<qint64, QList<QSize>> sizesByArea;
    for (QSize size : coarseSizes())
        sizesByArea[areaOf(size)].append(size);
    m_parameters.setFirstFitWins(false);
    PackedResult best;
    for (const auto& [area, sizes] : sizesByArea) {
        if (m_callbacks.aborted() || (!best.isEmpty() && best.allPlaced()))
            break;
        attemptSizes(sizes, best);
    }
    if (!best.textures().isEmpty())
        reportBest(best);
    return best;
}

QList<QSize> SizeSearch::coarseSizes() const {
    QList<QSize> sizes;
    for (int width : coarseSides(m_input.fixedSize.width(), m_input.maxSize.width())) {
        for (int height : coarseSides(m_input.fixedSize.height(), m_input.maxSize.height())) {
            if (m_input.forceSquared && width != height)
                continue;
            const QSize size = normalizeSize({width, height});
            if (!size.isEmpty() && canHold(size) && !sizes.contains(size))
                sizes.append(size);
        }
    }
    // Not all sprites can fit: the largest sheet holds what it can.
    if (sizes.isEmpty())
        sizes.append(normalizeSize(m_input.maxSize));
    return sizes;
}

bool SizeSearch::canHold(QSize size) const {
    const qint64 margin = qint64{m_input.shapePadding} - 2 * qint64{m_input.borderPadding};
    const qint64 usable = saturated::multiply(size.width() + margin, size.height() + margin);
    return m_parameters.sharedShapes()->area() <= usable;
}

void SizeSearch::attemptSizes(QList<QSize> sizes, PackedResult& best) {
    const bool pot = m_input.sizeConstraints == static_cast<int>(AlgorithmSettings::SizeConstraints::POT);
    std::stable_sort(sizes.begin(), sizes.end(), isBefore);
    for (QSize size : sizes) {
        if (m_callbacks.aborted())
            return;
        const PackedResult result = attempt(size);
        if (result.isBetterThan(best))
            best = result;
        // Of sizes with equal area, powers of two take the first that holds everything.
        if (pot && best.allPlaced())
            return;
    }
}

PackedResult SizeSearch::attempt(QSize size) {
    m_parameters.setSize(size);
    return m_callbacks.attempt(m_parameters);
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
        m_parameters.setFirstFitWins(true);
    PackedResult best = coarse;
    const PackedResult widthFirst = shrink(shrink(best, Side::Width, threshold), Side::Height, threshold);
    if (threshold < widthFirst.freeRatio()) {
        const PackedResult heightFirst =
            shrink(shrink(best, Side::Height, threshold), Side::Width, threshold);
        if (heightFirst.isBetterThan(best))
            best = heightFirst;
    }
    if (widthFirst.isBetterThan(best))
        best = widthFirst;
    return best;
}

PackedResult SizeSearch::shrink(const PackedResult& result, Side side, float threshold) {
    if (result.textures().isEmpty() || result.textures().first().size().isEmpty())
        return result;
    const PackedTexture texture = result.textures().first();
    const bool isWidth = side == Side::Width;
    const int kept = isWidth ? texture.height() : texture.width();
    const qint64 used = saturated::add(texture.area(), saturated::multiply(-1, texture.freeArea()));
    qint64 low = qint64{saturated::toInt(used / kept)} - 1;
    qint64 high = isWidth ? texture.width() : texture.height();
    // The two directions have always rounded their middle in different ways, and sheets are compared byte for
    // byte.
    const int roundUp = isWidth ? 0 : 1;
    QList<qint64> tried;
    bool bisect = true;
    qint64 x = 0;
    PackedResult current = result;
    while (!(threshold > current.freeRatio()) && !m_callbacks.aborted()) {
        x = bisect ? (low + roundUp + high) / 2 : x - 1;
        if (tried.contains(x)) {
            if (!bisect)
                break;
            bisect = false;
        }
        tried.append(x);
        const int shrunk = saturated::toInt(x);
        const PackedResult shrunkResult =
            attempt(normalizeSize(isWidth ? QSize(shrunk, kept) : QSize(kept, shrunk)));
        if (shrunkResult.isBetterThan(current)) {
            current = shrunkResult;
            reportBest(current);
            high = x;
        } else {
            low = x;
            if (!bisect)
                break;
        }
    }
    return current;
}
