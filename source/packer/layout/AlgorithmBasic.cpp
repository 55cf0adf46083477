#include "AlgorithmBasic.h"

#include "AlgorithmBasicSettings.h"
#include "AlgorithmSettings.h"
#include "FillResult.h"
#include "PackerParameters.h"
#include "Sprite.h"
#include "ToolkitSort.h"

#include <algorithm>

namespace {

using SortBy = AlgorithmBasicSettings::SortBy;
using Order = AlgorithmBasicSettings::Order;

/// A 32-bit key, like the sort's own; it wraps for sizes that no sheet holds.
int sizeKey(const SpriteShape& shape, SortBy key) {
    const auto width = static_cast<quint32>(shape.width);
    const auto height = static_cast<quint32>(shape.height);
    switch (key) {
    case SortBy::Width:
        return shape.width;
    case SortBy::Height:
        return shape.height;
    case SortBy::Area:
        return static_cast<int>(width * height);
    default:
        return static_cast<int>(width + height);
    }
}

/// Indices of the shapes in the order in which they are laid out.
std::vector<int> sortedIndices(const std::vector<SpriteShape>& shapes, SortBy key, Order order) {
    std::vector<int> indices(shapes.size());
    for (size_t i = 0; i < indices.size(); ++i)
        indices[i] = static_cast<int>(i);
    const auto ascending = [&](int a, int b) {
        const SpriteShape& first = shapes[static_cast<size_t>(a)];
        const SpriteShape& second = shapes[static_cast<size_t>(b)];
        return key == SortBy::Name ? first.name < second.name : sizeKey(first, key) < sizeKey(second, key);
    };
    // Not the reverse of the ascending order: equal keys lie in another way.
    const auto descending = [&](int a, int b) { return ascending(b, a); };
    if (order == Order::Descending)
        toolkitSort(indices.begin(), indices.end(), descending);
    else
        toolkitSort(indices.begin(), indices.end(), ascending);
    return indices;
}

/// The place where the next sprite of a row goes.
class Rows {
public:
    Rows(const PackerParameters& parameters)
        : m_border(parameters.borderPadding()), m_width(parameters.size().width()),
          m_maxX(m_width - m_border + parameters.shapePadding()),
          m_maxY(parameters.size().height() - m_border + parameters.shapePadding()), m_current{m_border,
                                                                                               m_border, 0} {}

    /// Finds a place for a sprite of the padded size. False, with nothing changed, if it has none: a lower
    /// one that comes later may still fill the row.
    bool take(int width, int height, QPoint& position) {
        Cursor next = m_current;
        if (next.x + width > m_maxX) {
            next = {m_border, next.y + next.rowHeight, 0};
            if (next.y > m_maxY)
                return false;
        }
        if (next.y + height > m_maxY)
            return false;
        // Against the sheet and not against the usable width: alone in a row a sprite may reach into the
        // border.
        if (next.x + width > m_width)
            return false;
        position = QPoint(static_cast<int>(next.x), static_cast<int>(next.y));
        next.x += width;
        next.rowHeight = std::max<qint64>(next.rowHeight, height);
        m_current = next;
        return true;
    }

private:
    struct Cursor {
        qint64 x;
        qint64 y;
        qint64 rowHeight;
    };

    qint64 m_border;
    qint64 m_width;
    qint64 m_maxX;
    qint64 m_maxY;
    Cursor m_current;
};

PackedResult layOut(const PackerParameters& parameters, SortBy key, Order order) {
    PackedTexture texture(parameters.borderPadding(), parameters.shapePadding());
    texture.setSize(parameters.size());
    PackedResult result;
    Rows rows(parameters);
    for (int index : sortedIndices(parameters.shapes(), key, order)) {
        const SpriteShape& shape = parameters.shapes()[static_cast<size_t>(index)];
        PackedSprite packed = makePackedSprite(parameters.sprites()[index]);
        QPoint position;
        if (rows.take(shape.width, shape.height, position)) {
            packed.setPosition(position);
            packed.setPaddedSize({shape.width, shape.height});
            texture.add(packed);
        } else {
            result.addUnplaced(packed);
        }
    }
    result.addTexture(texture);
    return result;
}

/// Of two layouts of the same sheet, the one to keep.
bool replaces(const PackedResult& candidate, const PackedResult& best) {
    if (candidate.isEmpty())
        return false;
    // An incomplete layout gives way to anything, even to one that holds less.
    if (best.isEmpty() || !best.allPlaced())
        return true;
    return candidate.allPlaced() && candidate.totalArea() < best.totalArea();
}

} // namespace

AlgorithmBasic::AlgorithmBasic()
    : Algorithm(static_cast<int>(AlgorithmSettings::AlgorithmId::Basic), QStringLiteral("Basic"),
                QStringLiteral("Simple algorithm for tile maps and atlases")) {}

std::unique_ptr<Algorithm> AlgorithmBasic::clone() const { return std::make_unique<AlgorithmBasic>(*this); }

PackedResult AlgorithmBasic::pack(const PackerParameters& parameters) const {
    const AlgorithmBasicSettings* settings = parameters.algorithmSettings()->basic();
    if (settings->sortBy() != SortBy::Best)
        return layOut(parameters, settings->sortBy(), settings->order());
    PackedResult best;
    for (SortBy key : {SortBy::Name, SortBy::Width, SortBy::Height, SortBy::Area, SortBy::Circumference}) {
        const PackedResult result = layOut(parameters, key, settings->order());
        if (replaces(result, best))
            best = result;
    }
    return best;
}
