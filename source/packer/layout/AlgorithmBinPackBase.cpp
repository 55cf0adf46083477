#include "AlgorithmBinPackBase.h"

#include "FillResult.h"
#include "PackerParameters.h"
#include "SaturatedMath.h"
#include "Sprite.h"

#include <QHash>

namespace {

using SizeKey = QPair<int, int>;

/// The sprites of one padded size, handed out in list order.
struct Waiting {
    std::vector<PackedSprite> sprites;
    size_t next = 0;

    bool isEmpty() const { return next == sprites.size(); }
};

/// Side of the bin for a side of the sheet. Padded sizes bring a shape padding on the right and at the
/// bottom, and the last sprite of a row may lay it into the border.
int binSide(int side, const PackerParameters& parameters) {
    return saturated::toInt(qint64{side} + parameters.shapePadding() -
                            2 * qint64{parameters.borderPadding()});
}

QList<PackedSprite> makePackedSprites(const QList<Sprite>& sprites) {
    QList<PackedSprite> list;
    list.reserve(sprites.size());
    for (const Sprite& sprite : sprites)
        list.append(makePackedSprite(sprite));
    return list;
}

/// Gives the rectangles back to sprites of their size. A rectangle under whose own size a sprite waits isn't
/// reported as rotated, even if it was placed for a sprite that is.
void assign(const std::vector<PackRect>& rects, QHash<SizeKey, Waiting>& waiting, bool allowRotation,
            int border) {
    for (const PackRect& rect : rects) {
        SizeKey key(rect.width, rect.height);
        auto found = waiting.find(key);
        const bool rotated = allowRotation && (found == waiting.end() || found->isEmpty());
        if (rotated) {
            key = {rect.height, rect.width};
            found = waiting.find(key);
        }
        if (found == waiting.end() || found->isEmpty())
            continue;
        PackedSprite& packed = found->sprites[found->next++];
        packed.setRotated(rotated);
        packed.setPosition(
            {saturated::toInt(qint64{rect.x} + border), saturated::toInt(qint64{rect.y} + border)});
        packed.setPaddedSize({key.first, key.second});
    }
}

} // namespace

PackedResult AlgorithmBinPackBase::pack(const PackerParameters& parameters) const {
    const QSize size = parameters.size();
    const std::vector<PackRect> rects =
        place(parameters, {binSide(size.width(), parameters), binSide(size.height(), parameters)});
    const std::vector<SpriteShape>& shapes = parameters.shapes();
    if (parameters.completeOnly() && rects.size() < shapes.size())
        return {};

    const QList<PackedSprite> list = makePackedSprites(parameters.sprites());
    QHash<SizeKey, Waiting> waiting;
    for (int i = 0; i < list.size(); ++i) {
        const SpriteShape& shape = shapes[static_cast<size_t>(i)];
        waiting[{shape.width, shape.height}].sprites.push_back(list[i]);
    }
    assign(rects, waiting, parameters.allowRotation(), parameters.borderPadding());

    PackedTexture texture(parameters.borderPadding(), parameters.shapePadding());
    texture.setSize(size);
    PackedResult result;
    for (const PackedSprite& packed : list) {
        if (packed.hasPosition())
            texture.add(packed);
        else
            result.addUnplaced(packed);
    }
    result.addTexture(texture);
    return result;
}
