#include "PlainSizeSearch.h"

#include "AlgorithmBasicSettings.h"
#include "AlgorithmMaxRectsSettings.h"
#include "AlgorithmSettings.h"
#include "SettingsBase.h"

#include <algorithm>

namespace {

bool isPowerOfTwo(int value) {
    int power = 1;
    while (power < value && power < 1 << 30)
        power *= 2;
    return power == value;
}

QList<int> doubled(int minimum, int maximum) {
    QList<int> list;
    for (int side = minimum; side < maximum; side *= 2)
        list << side;
    if (!list.contains(maximum))
        list << maximum;
    return list;
}

/// Takes one off the side until `isGood`.
template <class Test>
int reduced(int side, Test isGood) {
    while (!isGood(side))
        --side;
    return side;
}

void refuseConflict(int fixed, int side, const char* conflict) {
    if (fixed > 0 && side != fixed)
        throw QStringLiteral("Fixed size %1").arg(QLatin1String(conflict));
}

} // namespace

void PlainSizeSearch::constrain(int& w, int& h) const {
    const int fixedW = m_input.fixedSize.width();
    const int fixedH = m_input.fixedSize.height();
    if (m_input.sizeConstraints == 2) {
        w -= isPowerOfTwo(w) ? 1 : 0;
        refuseConflict(fixedW, w, "width is in conflict with size constraint NPOT.");
        h -= isPowerOfTwo(h) ? 1 : 0;
        refuseConflict(fixedH, h, "height is in conflict with size constraint NPOT.");
    }
    if (m_input.sizeConstraints == 0) {
        w = reduced(w, isPowerOfTwo);
        refuseConflict(fixedW, w, "width is in conflict with size constraint POT.");
        h = reduced(h, isPowerOfTwo);
        refuseConflict(fixedH, h, "height is in conflict with size constraint POT.");
    }
}

QSize PlainSizeSearch::normalize(int w, int h) const {
    using Format = SettingsBase::OutputFormat;
    const auto format = static_cast<Format>(m_input.outputFormat);
    const bool twoBytes = format == Format::RGBA4444 || format == Format::RGB565 ||
                          format == Format::RGBA5551 || format == Format::ALPHA_INTENSITY;
    const bool pvrtc = format == Format::PVRTC2 || format == Format::PVRTC4 ||
                       format == Format::PVRTC2_NOALPHA || format == Format::PVRTC4_NOALPHA;
    const auto isMultiple = [this](int side) { return side % m_input.baseFactor == 0; };
    const int fixedW = m_input.fixedSize.width();
    const int fixedH = m_input.fixedSize.height();
    w = fixedW > 0 ? fixedW : w;
    h = fixedH > 0 ? fixedH : h;
    for (;;) {
        const int oldW = w;
        const int oldH = h;
        if (w < 1 || h < 1)
            return {0, 0};
        constrain(w, h);
        if (m_input.forceWordAligned && twoBytes) {
            w -= w % 2;
            refuseConflict(fixedW, w, "width is in conflict with force word aligned textures.");
        }
        if ((pvrtc || m_input.forceSquared) && w != h) {
            if (fixedW > 0 || fixedH > 0)
                throw QStringLiteral("Fixed size width/height is in conflict with force squared");
            w = h = qMin(w, h);
        }
        w = reduced(w, isMultiple);
        h = reduced(h, isMultiple);
        if (w == oldW && h == oldH)
            return {w, h};
    }
}

bool PlainSizeSearch::allHeuristics() const {
    const AlgorithmSettings* settings = m_input.algorithmSettings;
    return settings->algorithmName() == QStringLiteral("Basic")
               ? settings->basic()->sortByName() == QStringLiteral("Best")
               : settings->maxRects()->heuristicName() == QStringLiteral("Best");
}

/// The coarse sizes that have room for all sprites, by area.
QMap<qint64, QList<QSize>> PlainSizeSearch::coarseSizes() const {
    qint64 areas = 0;
    for (const Sprite& sprite : m_input.sprites)
        areas += qint64{sprite.paddedSize().width()} * sprite.paddedSize().height();

    const bool fixedW = m_input.fixedSize.width() > 0;
    const bool fixedH = m_input.fixedSize.height() > 0;
    QSize maximum = m_input.maxSize;
    if (fixedW)
        maximum.setWidth(m_input.fixedSize.width());
    if (fixedH)
        maximum.setHeight(m_input.fixedSize.height());
    QMap<qint64, QList<QSize>> known;
    for (int width : doubled(fixedW ? maximum.width() : 1, maximum.width())) {
        for (int height : doubled(fixedH ? maximum.height() : 1, maximum.height())) {
            if (m_input.forceSquared && width != height)
                continue;
            const QSize size = normalize(width, height);
            if (size.width() < 1 || size.height() < 1)
                continue;
            const qint64 usable = qint64{size.width() + m_input.shapePadding - 2 * m_input.borderPadding} *
                                  (size.height() + m_input.shapePadding - 2 * m_input.borderPadding);
            const qint64 area = qint64{size.width()} * size.height();
            if (areas <= usable && !known[area].contains(size))
                known[area] << size;
        }
    }
    bool any = false;
    for (const auto& sizes : known)
        any |= !sizes.isEmpty();
    if (!any) {
        const QSize size = normalize(maximum.width(), maximum.height());
        known[qint64{size.width()} * size.height()] << size;
    }
    return known;
}

PackedResult PlainSizeSearch::searchCoarse() {
    PackedResult best;
    for (QList<QSize> sizes : coarseSizes()) { // a map goes in ascending order
        if (!best.isEmpty() && best.unplaced().isEmpty())
            break;
        std::sort(sizes.begin(), sizes.end(), [](QSize a, QSize b) {
            const int sumA = a.width() + a.height();
            const int sumB = b.width() + b.height();
            return sumA != sumB ? sumA < sumB : a.width() < b.width();
        });
        for (QSize size : sizes) {
            const PackedResult result = m_attempt(size, false);
            if (result.isBetterThan(best))
                best = result;
            if (best.unplaced().isEmpty() && m_input.sizeConstraints == 0)
                break;
        }
    }
    return best;
}

PackedResult PlainSizeSearch::run() {
    PackedResult best = searchCoarse();
    if (m_input.sizeConstraints == 0)
        return best;

    const QString mode = m_input.algorithmSettings->freeSizeModeName();
    const float threshold = mode == QStringLiteral("Fast")   ? 0.2F
                            : mode == QStringLiteral("Good") ? 0.02F
                                                             : 0.0F;
    m_firstFitWins = allHeuristics();
    const PackedResult w = shrink(shrink(best, Width, threshold), Height, threshold);
    if (threshold < w.freeRatio()) {
        const PackedResult h = shrink(shrink(best, Height, threshold), Width, threshold);
        if (h.isBetterThan(best))
            best = h;
    }
    if (w.isBetterThan(best))
        best = w;
    return best;
}

PackedResult PlainSizeSearch::shrink(PackedResult current, Side side, float threshold) {
    if (current.textures().isEmpty())
        return current;
    const int w = current.textures()[0].width();
    const int h = current.textures()[0].height();
    if (w < 1 || h < 1)
        return current;
    const qint64 used = qint64{w} * h - current.textures()[0].freeArea();
    qint64 low = used / (side == Width ? h : w) - 1;
    qint64 high = side == Width ? w : h;
    QList<qint64> tried;
    bool bisect = true;
    qint64 x = 0;
    while (!(threshold > current.freeRatio())) {
        if (bisect)
            x = side == Width ? (low + high) / 2 : (low + 1 + high) / 2;
        else
            x = x - 1;
        if (tried.contains(x)) {
            if (!bisect)
                break;
            bisect = false;
        }
        tried << x;
        const auto shrunk = static_cast<int>(x);
        const QSize size = side == Width ? normalize(shrunk, h) : normalize(w, shrunk);
        const PackedResult result = m_attempt(size, m_firstFitWins);
        if (result.isBetterThan(current)) {
            current = result;
            high = x;
            continue;
        }
        low = x;
        if (!bisect)
            break;
    }
    return current;
}
