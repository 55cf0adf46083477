#include "AlgorithmMaxRects.h"

#include "AlgorithmMaxRectsSettings.h"
#include "AlgorithmSettings.h"
#include "MaxRectsBin.h"
#include "PackerParameters.h"

#include <algorithm>
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

    const auto pot = static_cast<int>(AlgorithmSettings::SizeConstraints::POT);
    const bool firstFitWins = parameters.firstFitWins() || parameters.sizeConstraints() == pot;
    Choice best;
    std::vector<PackRect> attempt;
    MaxRectsBin space(bin.width(), bin.height(), parameters.allowRotation());
    for (auto heuristic : heuristicsToTry(parameters.algorithmSettings()->maxRects()->heuristic())) {
        space.init(bin.width(), bin.height(), parameters.allowRotation());
        space.insert(sizes, attempt, heuristic);
        if (firstFitWins && attempt.size() == sizes.size())
            return attempt;
        best.consider(attempt);
    }
    return best.rects;
}
