#include "AlgorithmMaxRects.h"

#include "AlgorithmMaxRectsSettings.h"
#include "AlgorithmSettings.h"
#include "MaxRectsBin.h"
#include "PackerParameters.h"
#include "SideBySide.h"

#include <algorithm>
#include <atomic>
#include <limits>

namespace {

using Heuristic = AlgorithmMaxRectsSettings::Heuristic;

std::vector<MaxRectsBin::Heuristic> heuristicsToTry(Heuristic heuristic) {
    if (heuristic == Heuristic::Best)
        return {MaxRectsBin::ShortSideFit, MaxRectsBin::LongSideFit, MaxRectsBin::AreaFit,
                MaxRectsBin::BottomLeft, MaxRectsBin::ContactPoint};
    return {static_cast<MaxRectsBin::Heuristic>(heuristic)};
}

/// The best way of placing so far.
struct Choice {
    std::vector<PackRect> rects;
    qint64 area = 10000000000;
    quint32 rotated = std::numeric_limits<quint32>::max();

    void consider(std::vector<PackRect>& attempt);
};

void Choice::consider(std::vector<PackRect>& attempt) {
    if (attempt.size() < rects.size())
        return;
    qint64 right = 0;
    qint64 bottom = 0;
    quint32 rotatedCount = 0;
    for (const PackRect& rect : attempt) {
        right = std::max<qint64>(right, rect.right());
        bottom = std::max<qint64>(bottom, rect.bottom());
        rotatedCount += rect.rotated ? 1 : 0;
    }
    const qint64 attemptArea = right * bottom;
    if (attempt.size() > rects.size() || attemptArea < area ||
        (attemptArea == area && rotatedCount < rotated)) {
        rects.swap(attempt);
        area = attemptArea;
        rotated = rotatedCount;
    }
}

/// Writes the value unless a lower one is there.
void lower(std::atomic<size_t>& number, size_t value) {
    size_t current = number;
    while (value < current && !number.compare_exchange_weak(current, value)) {
    }
}

} // namespace

AlgorithmMaxRects::AlgorithmMaxRects()
    : AlgorithmBinPackBase(static_cast<int>(AlgorithmSettings::AlgorithmId::MaxRects),
                           QStringLiteral("MaxRects"), QStringLiteral("Powerful packing algorithm")) {}

std::unique_ptr<Algorithm> AlgorithmMaxRects::clone() const {
    return std::make_unique<AlgorithmMaxRects>(*this);
}

std::vector<PackRect> AlgorithmMaxRects::place(const PackerParameters& parameters, QSize bin) const {
    std::vector<QSize> sizes;
    sizes.reserve(parameters.shapes().size());
    for (const SpriteShape& shape : parameters.shapes())
        sizes.emplace_back(shape.width, shape.height);
    const WaitingSizes waiting(sizes, parameters.allowRotation());
    const auto pot = static_cast<int>(AlgorithmSettings::SizeConstraints::POT);
    const bool firstFitWins = parameters.firstFitWins() || parameters.sizeConstraints() == pot;
    const auto heuristics = heuristicsToTry(parameters.algorithmSettings()->maxRects()->heuristic());

    std::vector<std::vector<PackRect>> attempts(heuristics.size());
    std::atomic<size_t> winner = heuristics.size();
    const auto tryHeuristic = [&](size_t number) {
        const auto isInVain = [&] { return winner < number; };
        if (isInVain())
            return;
        MaxRectsBin space(bin.width(), bin.height(), parameters.allowRotation());
        space.insert(waiting, attempts[number], heuristics[number], {parameters.completeOnly(), isInVain});
        if (firstFitWins && attempts[number].size() == sizes.size())
            lower(winner, number);
    };
    // Where the first fit wins, what comes behind it is in vain.
    if (!firstFitWins || parameters.sideBySide()) {
        sideBySide(heuristics.size(), tryHeuristic);
    } else {
        for (size_t number = 0; number < heuristics.size(); ++number)
            tryHeuristic(number);
    }
    if (winner < heuristics.size())
        return attempts[winner];
    Choice best;
    for (std::vector<PackRect>& attempt : attempts)
        best.consider(attempt);
    return best.rects;
}
