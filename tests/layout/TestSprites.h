#pragma once

#include "PackedResult.h"
#include "Settings.h"
#include "Sprite.h"
#include "SpriteSettings.h"

/// An opaque sprite whose padded size is the given one, in pixels.
inline Sprite makeSprite(const QString& name, QSize paddedSize) {
    static Settings settings;
    settings.setShapePadding(0);
    settings.globalSpriteSettings()->setTrimMode(SpriteSettings::TrimMode::None);
    QImage image(paddedSize, QImage::Format_ARGB32);
    image.fill(0xff336699);
    Sprite sprite(name, FileData(name + QStringLiteral(".png")));
    sprite.setImage(GCachedImage(image));
    sprite.update(settings);
    return sprite;
}

/// Sprites named "s000", "s001", ... in the order of the sizes.
inline QList<Sprite> makeSprites(const std::vector<QSize>& paddedSizes) {
    QList<Sprite> sprites;
    for (QSize size : paddedSizes)
        sprites.append(makeSprite(QStringLiteral("s%1").arg(sprites.size(), 3, 10, QLatin1Char('0')), size));
    return sprites;
}

/// "name@x,y" of the placed sprites in the texture's order, "*" behind those that are rotated; then the
/// unplaced ones.
inline std::string describe(const PackedResult& result) {
    QStringList parts;
    for (const PackedSprite& sprite : result.textures().first().sprites())
        parts.append(QStringLiteral("%1@%2,%3%4")
                         .arg(sprite.fullName())
                         .arg(sprite.position().x())
                         .arg(sprite.position().y())
                         .arg(sprite.rotated() ? QStringLiteral("*") : QString()));
    for (const PackedSprite& sprite : result.unplaced())
        parts.append(QLatin1Char('-') + sprite.fullName());
    return parts.join(QLatin1Char(' ')).toStdString();
}
