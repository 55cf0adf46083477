#include "PlainSizeSearch.h"

#include "TestSprites.h"

#include <QMap>

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

} // namespace

QSize PlainSizeSearch::normalize(int w, int h) const {
    using Format = SettingsBase::OutputFormat;
    const auto format = static_cast<Format>(m_input.outputFormat);
    const int fixedW = m_input.fixedSize.width();
    const int fixedH = m_input.fixedSize.height();
    w = fixedW > 0 ? fixedW : w;
    h = fixedH > 0 ? fixedH : h;
    for (;;) {
        const int oldW = w;
        const int oldH = h;
        if (w < 1 || h < 1)
            return {0, 0};
        if (m_input.sizeConstraints == 2) {
            w -= isPowerOfTwo(w) ? 1 : 0;
            if (fixedW > 0 && w != fixedW)
                throw QStringLiteral("Fixed size width is in conflict with size constraint NPOT.");
            h -= isPowerOfTwo(h) ? 1 : 0;
            if (fixedH > 0 && h != fixedH)
                throw QStringLiteral("Fixed size height is in conflict with size constraint NPOT.");
        }
        if (m_input.sizeConstraints == 0) {
            while (!isPowerOfTwo(w))
                --w;
            if (fixedW > 0 && w != fixedW)
                throw QStringLiteral("Fixed size width is in conflict with size constraint POT.");
            while (!isPowerOfTwo(h))
                --h;
            if (fixedH > 0 && h != fixedH)
                throw QStringLiteral("Fixed size height is in conflict with size constraint POT.");
        }
        const bool twoBytes = format == Format::RGBA4444 || format == Format::RGB565 ||
                              format == Format::RGBA5551 || format == Format::ALPHA_INTENSITY;
        if (m_input.forceWordAligned && twoBytes) {
            w -= w % 2;
            if (fixedW > 0 && w != fixedW)
                throw QStringLiteral("Fixed size width is in conflict with force word aligned textures.");
        }
        const bool pvrtc = format == Format::PVRTC2 || format == Format::PVRTC4 ||
                           format == Format::PVRTC2_NOALPHA || format == Format::PVRTC4_NOALPHA;
        if ((pvrtc || m_input.forceSquared) && w != h) {
            if (fixedW > 0 || fixedH > 0)
                throw QStringLiteral("Fixed size width/height is in conflict with force squared");
            w = h = qMin(w, h);
        }
        while (w % m_input.baseFactor != 0)
            --w;
        while (h % m_input.baseFactor != 0)
            --h;
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

PackedResult PlainSizeSearch::run() {
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

    PackedResult best;
    for (QList<QSize> sizes : known) { // a map goes in ascending order
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
    if (m_input.sizeConstraints == 0)
        return best;

    const QString mode = m_input.algorithmSettings->freeSizeModeName();
    const float threshold = mode == QStringLiteral("Fast")   ? 0.2F
                            : mode == QStringLiteral("Good") ? 0.02F
                                                             : 0.0F;
    m_firstFitWins = allHeuristics();
    const PackedResult w = shrinkHeight(shrinkWidth(best, threshold), threshold);
    if (threshold < w.freeRatio()) {
        const PackedResult h = shrinkWidth(shrinkHeight(best, threshold), threshold);
        if (h.isBetterThan(best))
            best = h;
    }
    if (w.isBetterThan(best))
        best = w;
    return best;
}

PackedResult PlainSizeSearch::shrinkWidth(PackedResult current, float threshold) {
    if (current.textures().isEmpty())
        return current;
    const int w = current.textures()[0].width();
    const int h = current.textures()[0].height();
    if (w < 1 || h < 1)
        return current;
    const qint64 used = qint64{w} * h - current.textures()[0].freeArea();
    qint64 low = used / h - 1;
    qint64 high = w;
    QList<qint64> tried;
    bool bisect = true;
    qint64 x = 0;
    while (!(threshold > current.freeRatio())) {
        if (bisect)
            x = (low + high) / 2;
        else
            x = x - 1;
        if (tried.contains(x)) {
            if (!bisect)
                break;
            bisect = false;
        }
        tried << x;
        const PackedResult result = m_attempt(normalize(static_cast<int>(x), h), m_firstFitWins);
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

PackedResult PlainSizeSearch::shrinkHeight(PackedResult current, float threshold) {
    if (current.textures().isEmpty())
        return current;
    const int w = current.textures()[0].width();
    const int h = current.textures()[0].height();
    if (w < 1 || h < 1)
        return current;
    const qint64 used = qint64{w} * h - current.textures()[0].freeArea();
    qint64 low = used / w - 1;
    qint64 high = h;
    QList<qint64> tried;
    bool bisect = true;
    qint64 x = 0;
    while (!(threshold > current.freeRatio())) {
        if (bisect)
            x = (low + 1 + high) / 2;
        else
            x = x - 1;
        if (tried.contains(x)) {
            if (!bisect)
                break;
            bisect = false;
        }
        tried << x;
        const PackedResult result = m_attempt(normalize(w, static_cast<int>(x)), m_firstFitWins);
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
