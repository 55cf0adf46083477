#include "PackedResult.h"

#include "SaturatedMath.h"

struct PackedResult::Data : QSharedData {
    QList<PackedTexture> textures;
    QList<PackedSprite> unplaced;
};

PackedResult::PackedResult() : m_data(new Data) {}
PackedResult::PackedResult(const PackedResult& other) = default;
PackedResult::PackedResult(PackedResult&& other) noexcept = default;
PackedResult& PackedResult::operator=(const PackedResult& other) = default;
PackedResult& PackedResult::operator=(PackedResult&& other) noexcept = default;
PackedResult::~PackedResult() = default;

PackedResult PackedResult::clone() const {
    PackedResult copy;
    for (const PackedTexture& texture : textures())
        copy.addTexture(texture.clone());
    for (const PackedSprite& sprite : unplaced())
        copy.addUnplaced(sprite.clone());
    return copy;
}

const QList<PackedTexture>& PackedResult::textures() const { return m_data->textures; }
void PackedResult::addTexture(const PackedTexture& texture) { m_data->textures.append(texture); }

const QList<PackedSprite>& PackedResult::unplaced() const { return m_data->unplaced; }
void PackedResult::addUnplaced(const PackedSprite& sprite) { m_data->unplaced.append(sprite); }

bool PackedResult::isEmpty() const { return m_data->textures.isEmpty() && m_data->unplaced.isEmpty(); }
bool PackedResult::allPlaced() const { return m_data->unplaced.isEmpty(); }

qint64 PackedResult::totalArea() const {
    qint64 sum = 0;
    for (const PackedTexture& texture : textures())
        sum = saturated::add(sum, texture.area());
    return sum;
}

qint64 PackedResult::totalFreeArea() const {
    qint64 sum = 0;
    for (const PackedTexture& texture : textures())
        sum = saturated::add(sum, texture.freeArea());
    return sum;
}

float PackedResult::freeRatio() const {
    return static_cast<float>(static_cast<double>(totalFreeArea()) / static_cast<double>(totalArea()));
}

qint64 PackedResult::rotationCount() const {
    qint64 count = 0;
    for (const PackedTexture& texture : textures()) {
        for (const PackedSprite& sprite : texture.sprites())
            count += sprite.rotated() ? 1 : 0;
    }
    return count;
}

bool PackedResult::isBetterThan(const PackedResult& other) const {
    if (isEmpty())
        return false;
    if (other.isEmpty())
        return true;
    if (unplaced().size() != other.unplaced().size())
        return unplaced().size() < other.unplaced().size();
    const qint64 area = totalArea();
    const qint64 otherArea = other.totalArea();
    if (area != otherArea)
        return area < otherArea;
    return rotationCount() < other.rotationCount();
}
