#include "VariantDerivation.h"

#include "FillResult.h"
#include "Settings.h"
#include "Sprite.h"

#include <gtest/gtest.h>

namespace {

QString u(const char* text) { return QString::fromUtf8(text); }

Sprite makeSprite(const char* name, QSize size, const Settings& settings) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(0xff336699);
    Sprite sprite(u(name), FileData(u(name)));
    sprite.setImage(GCachedImage(image));
    sprite.update(settings);
    return sprite;
}

/// One rotated sprite on a sheet, and one that found no place.
PackedResult layout(const Sprite& owner, const Sprite& lost) {
    PackedSprite placed = makePackedSprite(owner);
    placed.setPosition(QPoint(2, 6));
    placed.setRotated(true);
    PackedTexture texture(2, 4);
    texture.setSize(QSize(64, 32));
    texture.add(placed);
    PackedResult result;
    result.addTexture(texture);
    result.addUnplaced(makePackedSprite(lost));
    return result;
}

} // namespace

TEST(VariantDerivation, scalesPlacesAndRendersAnew) {
    Settings settings;
    settings.globalSpriteSettings()->setTrimMode(SpriteSettings::TrimMode::None);
    settings.setShapePadding(4);
    settings.setBorderPadding(2);
    Sprite owner = makeSprite("a", QSize(20, 12), settings);
    const Sprite alias = makeSprite("b", QSize(20, 12), settings);
    owner.addAlias(alias);
    const Sprite lost = makeSprite("c", QSize(100, 100), settings);

    PackedResult main = layout(owner, lost);
    fillResult(main, {owner, alias, lost}, 0);

    const std::unique_ptr<Settings> variant(settings.clone());
    variant->globalSpriteSettings()->setScale(0.5);
    variant->setShapePadding(2);
    variant->setBorderPadding(1);
    const PackedResult half = deriveVariant(main, {owner, lost}, *variant, 0.5, 1);

    ASSERT_EQ(half.textures().size(), 1);
    const PackedTexture& sheet = half.textures().first();
    EXPECT_EQ(sheet.size(), QSize(32, 16));
    EXPECT_EQ(sheet.borderPadding(), 1);
    EXPECT_EQ(sheet.shapePadding(), 2);
    ASSERT_EQ(sheet.allSprites().size(), 2);
    const PackedSprite a = sheet.sprites().first();
    EXPECT_EQ(a.position(), QPoint(1, 3));
    EXPECT_EQ(a.size(), QSize(10, 6));
    EXPECT_EQ(a.paddedSize(), QSize(12, 8));
    EXPECT_EQ(a.rotationDirection(), 1);
    EXPECT_TRUE(a.rotated());
    EXPECT_EQ(a.textureSize(), QSize(32, 16));
    EXPECT_EQ(a.cachedImage().image().size(), QSize(10, 6));
    EXPECT_EQ(a.cachedImage().image().pixel(5, 3), 0xff336699u);
    const PackedSprite b = sheet.allSprites().last();
    EXPECT_EQ(b.fullName(), u("b"));
    EXPECT_TRUE(b.alias());
    EXPECT_EQ(b.position(), a.position());
    EXPECT_EQ(b.textureSize(), QSize(32, 16));
    ASSERT_EQ(half.unplaced().size(), 1);
    EXPECT_EQ(half.unplaced().first().fullName(), u("c"));
    EXPECT_EQ(main.textures().first().sprites().first().position(), QPoint(2, 6)) << "the main layout stays";
}
