#include "Sprite.h"
#include "Settings.h"
#include "SpritePreparation.h"
#include "TestPictures.h"

namespace {

using TrimMode = SpriteSettings::TrimMode;

class SpriteTest : public testing::Test {
protected:
    SpriteTest() : sprite(QStringLiteral("dir/a.png"), FileData(QStringLiteral("/dir/a.png"))) {
        sprite.setImage(GCachedImage(picture({".....", "..ab.", "..c..", "....."})));
        settings.setShapePadding(0);
    }

    SpriteSettings& spriteSettings() { return *settings.globalSpriteSettings(); }

    /// True if the update made a new image.
    bool rebuilt() {
        const qint64 before = sprite.image().image().cacheKey();
        sprite.update(settings);
        return sprite.image().image().cacheKey() != before;
    }

    void expect(TrimMode mode, const QStringList& rows, QSize size, QPoint offset, bool trimmed) {
        spriteSettings().setTrimMode(mode);
        sprite.update(settings);
        EXPECT_TRUE(samePixels(sprite.image().image(), picture(rows)));
        EXPECT_EQ(sprite.size(), size);
        EXPECT_EQ(sprite.offset(), offset);
        EXPECT_EQ(sprite.trimmed(), trimmed);
    }

    Settings settings;
    Sprite sprite;
};

} // namespace

TEST_F(SpriteTest, givesTheNumbersOfEachTrimMode) {
    expect(TrimMode::None, {".....", "..ab.", "..c..", "....."}, {5, 4}, {0, 0}, false);
    expect(TrimMode::Trim, {".ab", ".c."}, {5, 4}, {1, 1}, true);
    expect(TrimMode::Crop, {".ab", ".c."}, {3, 2}, {0, 0}, false);
    expect(TrimMode::CropKeepPos, {".ab", ".c."}, {3, 2}, {1, 1}, false);
    settings.setCommonDivisorX(4);
    settings.setCommonDivisorY(3);
    expect(TrimMode::None, {"........", "........", "...ab...", "...c....", "........", "........"}, {8, 6},
           {0, 0}, false);
}

TEST_F(SpriteTest, countsInnerPaddingButNotExtrusion) {
    spriteSettings().setInnerPadding(2);
    sprite.update(settings);
    EXPECT_EQ(sprite.size(), QSize(9, 8));
    EXPECT_EQ(sprite.image().size(), QSize(7, 6));
    EXPECT_EQ(sprite.offset(), QPoint(1, 1));
    spriteSettings().setInnerPadding(0);
    spriteSettings().setExtrude(1);
    sprite.update(settings);
    EXPECT_EQ(sprite.size(), QSize(5, 4));
    EXPECT_EQ(sprite.extrude(), 1);
    EXPECT_EQ(sprite.offset(), QPoint(1, 1)); // within the extruded image
    EXPECT_TRUE(samePixels(sprite.image().image(), picture({".....", "..ab.", "..c..", "....."})));
}

TEST_F(SpriteTest, isMadeAgainOnlyForWhatReachesPixels) {
    EXPECT_TRUE(rebuilt());
    const quint32 hash = sprite.hash();
    EXPECT_EQ(hash, SpritePreparation::pixelHash(sprite.image().image()));
    EXPECT_FALSE(rebuilt());
    settings.setDataFormat(QStringLiteral("json"));
    settings.setShapePadding(7);
    EXPECT_FALSE(rebuilt());
    EXPECT_EQ(sprite.paddedSize(), QSize(10, 9));
    const std::vector<std::function<void()>> changes{
        [&] { spriteSettings().setScale(0.5); },
        [&] { spriteSettings().setScaleMode(ScaleMode::Eagle); },
        [&] { spriteSettings().setHeuristicMask(true); },
        [&] { settings.setCommonDivisorX(2); },
        [&] { settings.setCommonDivisorY(2); },
        [&] { spriteSettings().setTrimMode(TrimMode::Crop); },
        [&] { spriteSettings().setExtrude(1); },
        [&] { spriteSettings().setTrimThreshold(9); },
        [&] { spriteSettings().setInnerPadding(1); },
        [&] { settings.setShapeDebug(true); },
        [&] { settings.setOutputFormat(SettingsBase::OutputFormat::RGBA4444); },
        [&] { settings.setBackgroundColor(0xFF112233); },
        [&] { settings.setDitherType(SettingsBase::DitherType::Linear); },
        [&] { settings.setPremultiplyAlpha(true); },
    };
    for (size_t i = 0; i < changes.size(); ++i) {
        changes[i]();
        EXPECT_TRUE(rebuilt()) << i;
        EXPECT_FALSE(rebuilt()) << i;
    }
    sprite.setImage(GCachedImage(picture({"a"})));
    EXPECT_EQ(sprite.hash(), 0U);
    EXPECT_TRUE(rebuilt());
}

TEST_F(SpriteTest, keepsItsImageAndTheReasonOfAFailure) {
    sprite.update(settings);
    const QImage before = sprite.image().image();
    spriteSettings().setScale(1e6);
    spriteSettings().setExtrude(3);
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_FALSE(rebuilt());
        EXPECT_EQ(sprite.failure(), QStringLiteral("Scaled sprite exceeds maximum texture size"));
        EXPECT_EQ(sprite.image().image(), before);
        EXPECT_EQ(sprite.size(), QSize(5, 4));
        EXPECT_EQ(sprite.extrude(), 0);
    }
    spriteSettings().setScale(1.0);
    spriteSettings().setExtrude(2000000000);
    EXPECT_FALSE(rebuilt());
    EXPECT_EQ(sprite.failure(), QStringLiteral("Out of memory"));
    spriteSettings().setExtrude(0);
    EXPECT_TRUE(rebuilt());
    EXPECT_EQ(sprite.failure(), QString());
}

TEST_F(SpriteTest, withoutAnImageHasNoSize) {
    Sprite empty(QStringLiteral("e"), FileData());
    settings.setShapePadding(3);
    empty.update(settings);
    EXPECT_TRUE(empty.image().isNull());
    EXPECT_EQ(empty.paddedSize(), QSize(2, 2));
    EXPECT_EQ(empty.size(), QSize(-1, -1));
    EXPECT_EQ(empty.hash(), 0U);
    EXPECT_EQ(Sprite().id(), -1);
    EXPECT_NE(empty.id(), sprite.id());
    // Scaled to nothing: no image, and the reason is kept.
    spriteSettings().setScale(0.01);
    for (int mode = 0; mode < 4; ++mode) {
        spriteSettings().setTrimMode(static_cast<TrimMode>(mode));
        settings.setShapeDebug(mode % 2 == 0);
        sprite.update(settings);
        EXPECT_TRUE(sprite.image().isNull());
        EXPECT_TRUE(sprite.failure().contains(QStringLiteral("--scale")));
    }
}

TEST_F(SpriteTest, preparesInTheOrderOfTheChain) {
    // The frame goes through the reduction: half transparent red becomes opaque in a format of one alpha bit.
    spriteSettings().setTrimMode(TrimMode::None);
    spriteSettings().setScaleMode(ScaleMode::Fast);
    spriteSettings().setScale(2.0);
    settings.setShapeDebug(true);
    settings.setOutputFormat(SettingsBase::OutputFormat::RGBA5551);
    sprite.update(settings);
    const QImage image = sprite.image().image();
    EXPECT_EQ(image.size(), QSize(10, 8));
    EXPECT_EQ(image.pixel(9, 7), 0xFFFF0000);
    EXPECT_EQ(image.format(), QImage::Format_ARGB32);
}

TEST_F(SpriteTest, rendersItsRectangleAtAnotherScale) {
    spriteSettings().setScaleMode(ScaleMode::Fast);
    sprite.update(settings);
    EXPECT_TRUE(samePixels(sprite.renderScaled(2.0, 0), picture({"..aabb", "..aabb", "..cc..", "..cc.."})));
    // The rectangle starts at the scaled offset of the main image, whatever the extrusion moved.
    EXPECT_TRUE(samePixels(sprite.renderScaled(1.0, 1), picture({"...", "..a"})));
    sprite.setImage(GCachedImage(picture({"ab"})));
    sprite.update(settings);
    EXPECT_TRUE(samePixels(sprite.renderScaled(1.0, 0), picture({"ab"})));
    EXPECT_TRUE(Sprite().renderScaled(1.0, 0).isNull());
}

TEST_F(SpriteTest, sharesItsRecordAmongCopies) {
    Sprite copy = sprite;
    copy.addAlias(Sprite(QStringLiteral("b"), FileData()));
    copy.update(settings);
    EXPECT_EQ(sprite.aliases().size(), 1);
    EXPECT_FALSE(sprite.image().isNull());
    sprite.clearAliases();
    EXPECT_TRUE(copy.aliases().isEmpty());
}
