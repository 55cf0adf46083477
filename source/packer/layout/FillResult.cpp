#include "FillResult.h"

#include "Sprite.h"

#include <QSet>

namespace {

/// The sprites of a job, by name and by id.
class CurrentSprites {
public:
    explicit CurrentSprites(const QList<Sprite>& sprites) {
        m_byName.reserve(sprites.size());
        m_ids.reserve(sprites.size());
        for (const Sprite& sprite : sprites) {
            m_byName.insert(sprite.name(), sprite);
            m_ids.insert(sprite.id());
        }
    }

    /// Null if the job has no sprite of that name.
    const Sprite* find(const QString& name) const {
        const auto found = m_byName.constFind(name);
        return found == m_byName.constEnd() ? nullptr : &*found;
    }

    bool holds(int id) const { return m_ids.contains(id); }

private:
    QHash<QString, Sprite> m_byName;
    QSet<int> m_ids;
};

bool sameAliases(const PackedSprite& packed, const Sprite& sprite) {
    const QList<PackedSprite>& entries = packed.aliasList();
    const QList<Sprite>& aliases = sprite.aliases();
    return std::equal(entries.begin(), entries.end(), aliases.begin(), aliases.end(),
                      [](const PackedSprite& entry, const Sprite& alias) {
                          return entry.id() == alias.id() && entry.fullName() == alias.name();
                      });
}

/// An attempt is found again by names and sizes. The sprites behind them may have been made anew since, and
/// other sprites may have become or ceased to be their aliases. True if the entry had to be changed.
bool refreshIdentity(PackedSprite& packed, const CurrentSprites& current) {
    const Sprite* sprite = current.find(packed.fullName());
    if (!sprite)
        return false;
    bool changed = false;
    if (!current.holds(packed.id())) {
        packed.setId(sprite->id());
        changed = true;
    }
    if (packed.id() == sprite->id() && !sameAliases(packed, *sprite)) {
        packed.clearAliases();
        for (const Sprite& alias : sprite->aliases())
            packed.addAlias(PackedSprite(alias.name(), alias.id()));
        changed = true;
    }
    return changed;
}

void refreshIdentities(PackedTexture texture, const CurrentSprites& current) {
    const QList<PackedSprite> sprites = texture.sprites();
    bool changed = false;
    for (PackedSprite packed : sprites)
        changed |= refreshIdentity(packed, current);
    if (!changed)
        return;
    texture.clear();
    for (const PackedSprite& packed : sprites)
        texture.add(packed);
}

void fill(PackedSprite packed, QSize textureSize, const CurrentSprites& current, int rotationDirection) {
    if (const Sprite* sprite = current.find(packed.fullName()))
        copySpriteData(packed, *sprite, rotationDirection);
    packed.setTextureSize(textureSize);
}

} // namespace

PackedSprite makePackedSprite(const Sprite& sprite) {
    PackedSprite packed(sprite.name(), sprite.id());
    for (const Sprite& alias : sprite.aliases())
        packed.addAlias(PackedSprite(alias.name(), alias.id()));
    return packed;
}

void copySpriteData(PackedSprite& packed, const Sprite& sprite, int rotationDirection) {
    if (!packed.alias()) {
        packed.setCachedImage(sprite.image());
        packed.setRotationDirection(rotationDirection);
    }
    packed.setSize(sprite.image().size());
    packed.setUntrimmedSize(sprite.size());
    packed.setInset(sprite.extrude());
    packed.setCornerOffset(sprite.offset());
    packed.setTrimmed(sprite.trimmed());
    packed.setPaddedSize(sprite.paddedSize());
    packed.setFileData(sprite.fileData());
}

void fillResult(PackedResult& result, const QList<Sprite>& sprites, int rotationDirection) {
    const CurrentSprites current(sprites);
    for (const PackedTexture& texture : result.textures()) {
        refreshIdentities(texture, current);
        for (const PackedSprite& packed : texture.sprites()) {
            fill(packed, texture.size(), current, rotationDirection);
            for (PackedSprite alias : packed.aliasList()) {
                alias.setPosition(packed.position());
                alias.setRotated(packed.rotated());
                fill(alias, texture.size(), current, rotationDirection);
            }
        }
    }
    for (PackedSprite packed : result.unplaced()) {
        refreshIdentity(packed, current);
        packed.setRotated(false);
        if (const Sprite* sprite = current.find(packed.fullName()))
            copySpriteData(packed, *sprite, rotationDirection);
    }
}
