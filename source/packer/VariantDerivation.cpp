#include "VariantDerivation.h"

#include "Error.h"
#include "Settings.h"
#include "SideBySide.h"
#include "Sprite.h"

#include <optional>
#include <vector>

namespace {

QPoint scaled(QPoint point, double ratio) { return {qRound(point.x() * ratio), qRound(point.y() * ratio)}; }

QSize scaled(QSize size, double ratio) {
    return {qRound(size.width() * ratio), qRound(size.height() * ratio)};
}

/// The entry at the new scale, without pixels and without aliases.
PackedSprite derive(const PackedSprite& old, double ratio) {
    PackedSprite entry(old.fullName(), old.id());
    entry.setPosition(scaled(old.position(), ratio));
    entry.setCornerOffset(scaled(old.cornerOffset(), ratio));
    entry.setUntrimmedSize(scaled(old.untrimmedSize(), ratio));
    entry.setSize(scaled(old.size(), ratio));
    entry.setPaddedSize(scaled(old.paddedSize(), ratio));
    entry.setInset(int(old.inset() * ratio));
    entry.setRotated(old.rotated());
    entry.setTrimmed(old.trimmed());
    entry.setAlias(old.alias());
    entry.setFileData(old.fileData());
    return entry;
}

PackedSprite deriveWithAliases(const PackedSprite& old, double ratio) {
    PackedSprite entry = derive(old, ratio);
    for (const PackedSprite& alias : old.aliasList())
        entry.addAlias(derive(alias, ratio));
    return entry;
}

/// Renders the sprites of a sheet on all cores; the first error in their order is thrown.
class Renderer {
public:
    Renderer(const QList<Sprite>& sprites, const Settings& variant)
        : m_scale(variant.globalSpriteSettings()->scale()),
          m_extrude(int(variant.globalSpriteSettings()->extrude())) {
        for (const Sprite& sprite : sprites)
            m_byId.insert(sprite.id(), sprite);
    }

    std::vector<QImage> render(const QList<PackedSprite>& entries) const {
        std::vector<Rendered> results(entries.size());
        sideBySide(results.size(), [&](std::size_t number) {
            results[number] = render(entries.at(static_cast<int>(number)).id());
        });
        std::vector<QImage> images;
        for (const Rendered& result : results) {
            if (result.error)
                throw *result.error;
            images.push_back(result.image);
        }
        return images;
    }

private:
    struct Rendered {
        QImage image;
        std::optional<Error> error;
    };

    /// Keeps the error: of several the first in the order of the sprites is thrown, not the first in time.
    Rendered render(int id) const {
        const auto sprite = m_byId.constFind(id);
        if (sprite == m_byId.constEnd())
            return {};
        try {
            return {sprite->renderScaled(m_scale, m_extrude), std::nullopt};
        } catch (const Error& error) {
            return {{}, error};
        } catch (const std::bad_alloc&) {
            return {{}, Error(Error::OutOfMemory, QStringLiteral("Out of memory"))};
        }
    }

    double m_scale;
    int m_extrude;
    QHash<int, Sprite> m_byId;
};

PackedTexture deriveTexture(const PackedTexture& old, const Renderer& renderer, const Settings& variant,
                            double ratio, int rotationDirection) {
    PackedTexture texture(int(variant.borderPadding()), int(variant.shapePadding()));
    texture.setSize(scaled(old.size(), ratio));
    const std::vector<QImage> images = renderer.render(old.sprites());
    for (int i = 0; i < old.sprites().size(); ++i) {
        PackedSprite entry = deriveWithAliases(old.sprites().at(i), ratio);
        entry.setCachedImage(GCachedImage(images[i]));
        entry.setSize(images[i].size());
        entry.setRotationDirection(rotationDirection);
        entry.setTextureSize(texture.size());
        for (PackedSprite alias : entry.aliasList())
            alias.setTextureSize(texture.size());
        texture.add(entry);
    }
    return texture;
}

} // namespace

PackedResult deriveVariant(const PackedResult& main, const QList<Sprite>& sprites, const Settings& variant,
                           double ratio, int rotationDirection) {
    const Renderer renderer(sprites, variant);
    PackedResult result;
    for (const PackedSprite& old : main.unplaced())
        result.addUnplaced(deriveWithAliases(old, ratio));
    for (const PackedTexture& old : main.textures())
        result.addTexture(deriveTexture(old, renderer, variant, ratio, rotationDirection));
    return result;
}
