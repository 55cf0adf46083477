#include "PlainAlgorithm.h"

#include "AlgorithmMaxRectsSettings.h"
#include "AlgorithmSettings.h"
#include "PackerParameters.h"

PlainAlgorithm::PlainAlgorithm(PlainMaxRects::Contact contact)
    : AlgorithmBinPackBase(0, QStringLiteral("MaxRects"), QString()), m_contact(contact) {}

std::unique_ptr<Algorithm> PlainAlgorithm::clone() const { return std::make_unique<PlainAlgorithm>(*this); }

std::vector<PackRect> PlainAlgorithm::place(const PackerParameters& parameters, QSize bin) const {
    std::vector<QSize> sizes;
    for (const SpriteShape& shape : parameters.shapes())
        sizes.emplace_back(shape.width, shape.height);
    const int wanted = static_cast<int>(parameters.algorithmSettings()->maxRects()->heuristic());
    std::vector<PackRect> best;
    qint64 bestArea = 10000000000;
    qint64 bestRotated = 4294967295;
    for (int heuristic = 1; heuristic <= 5; ++heuristic) {
        if (wanted != 0 && wanted != heuristic)
            continue;
        const auto placed =
            PlainMaxRects(bin, parameters.allowRotation(), m_contact).insert(sizes, heuristic);
        if (placed.size() == sizes.size() && (parameters.firstFitWins() || parameters.sizeConstraints() == 0))
            return placed;
        if (placed.size() < best.size())
            continue;
        qint64 right = 0;
        qint64 bottom = 0;
        qint64 rotated = 0;
        for (const PackRect& rect : placed) {
            right = std::max<qint64>(right, rect.x + rect.width);
            bottom = std::max<qint64>(bottom, rect.y + rect.height);
            rotated += rect.rotated;
        }
        if (placed.size() > best.size() || right * bottom < bestArea ||
            (right * bottom == bestArea && rotated < bestRotated)) {
            best = placed;
            bestArea = right * bottom;
            bestRotated = rotated;
        }
    }
    return best;
}
