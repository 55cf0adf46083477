#include "PackedSprite.h"

#include <gtest/gtest.h>

namespace {

PackedSprite filledSprite() {
    PackedSprite sprite(QStringLiteral("walk.png"), 7);
    sprite.setPosition({100, 40});
    sprite.setSize({34, 14});
    sprite.setInset(2);
    sprite.setCornerOffset({5, -3});
    sprite.setUntrimmedSize({50, 60});
    sprite.setTextureSize({200, 80});
    return sprite;
}

} // namespace

TEST(PackedSprite, derivesItsRectangles) {
    PackedSprite sprite = filledSprite();
    EXPECT_EQ(sprite.frameRectWithoutRotation(), QRect(102, 42, 30, 10));
    EXPECT_EQ(sprite.frameRect(), QRect(102, 42, 30, 10));
    EXPECT_EQ(sprite.sourceRect(), QRect(5, -3, 30, 10));
    sprite.setRotated(true);
    EXPECT_EQ(sprite.frameRectWithoutRotation(), QRect(102, 42, 30, 10));
    EXPECT_EQ(sprite.frameRect(), QRect(102, 42, 10, 30));
    EXPECT_EQ(sprite.sourceRect(), QRect(5, -3, 30, 10));
    EXPECT_EQ(sprite.frameRectRel(), QRectF(102 / 200.0, 42 / 80.0, 10 / 200.0, 30 / 80.0));

    PackedSprite whole(QStringLiteral("whole"), 1);
    whole.setPosition({0, 0});
    whole.setSize({64, 32});
    whole.setTextureSize({64, 32});
    EXPECT_EQ(whole.frameRectRel(), QRectF(0, 0, 1, 1));
}

TEST(PackedSprite, sharesItsRecordUntilCloned) {
    PackedSprite sprite = filledSprite();
    sprite.addAlias(PackedSprite(QStringLiteral("twin"), 8));
    EXPECT_TRUE(sprite.aliasList().first().alias());
    EXPECT_FALSE(sprite.alias());

    PackedSprite copy = sprite;
    const PackedSprite clone = sprite.clone();
    copy.setPosition({1, 2});
    copy.setTrimmed(true);
    PackedSprite(copy.aliasList().first()).setPosition({3, 4});
    EXPECT_EQ(sprite.position(), QPoint(1, 2));
    EXPECT_TRUE(sprite.trimmed());
    EXPECT_EQ(clone.position(), QPoint(100, 40));
    EXPECT_FALSE(clone.trimmed());
    EXPECT_EQ(clone.aliasList().first().fullName(), QStringLiteral("twin"));
    EXPECT_EQ(clone.aliasList().first().id(), 8);
    EXPECT_FALSE(clone.aliasList().first().hasPosition());
    EXPECT_TRUE(sprite.aliasList().first().hasPosition());
    EXPECT_EQ(clone.untrimmedSize(), QSize(50, 60));
}

TEST(PackedSprite, startsWithoutAPlace) {
    const PackedSprite sprite;
    EXPECT_EQ(sprite.id(), -1);
    EXPECT_EQ(sprite.position(), QPoint(-1, -1));
    EXPECT_FALSE(sprite.hasPosition());
    EXPECT_TRUE(sprite.cachedImage().isNull());
    EXPECT_TRUE(sprite.image().isNull());
}

TEST(PackedSprite, turnsItsImageAsItLies) {
    // a b
    // c d
    // e f
    QImage upright(2, 3, QImage::Format_ARGB32);
    for (int i = 0; i < 6; ++i)
        upright.setPixel(i % 2, i / 2, 0xff0000a0u + static_cast<uint>(i));
    const auto pixels = [](const QImage& image) {
        std::string letters;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                letters += static_cast<char>('a' + (image.pixel(x, y) - 0xff0000a0u));
            letters += '/';
        }
        return letters;
    };
    PackedSprite sprite;
    sprite.setCachedImage(GCachedImage(upright));
    EXPECT_EQ(pixels(sprite.image()), "ab/cd/ef/");
    sprite.setRotated(true);
    EXPECT_EQ(pixels(sprite.image()), "eca/fdb/");
    sprite.setRotationDirection(PackedSprite::CounterClockwise);
    EXPECT_EQ(pixels(sprite.image()), "bdf/ace/");
}

TEST(PackedSprite, trimsFileExtensionsOffItsName) {
    const char* const rows[][2] = {
        {"a.PNG", "a"},
        {"dir.png/b.bmp", "dir.png/b"},
        {"a.tiff", "a"},
        {"a.tif", "a"},
        {"a.png.png", "a.png"},
        {"a.bmp.png", "a"},
        {"a.png.bmp", "a.png"},
        {"a.png.tga", "a.png"},
        {"a.psd.Pvr", "a"},
        {"movie.SWF/frame_01", "movie/frame_01"},
        {"a.swf/b.swf/c.png", "a/b/c"},
        {"movie.swf", "movie.swf"},
        {"a.pvr.ccz", "a"},
        {"a.pvr_gz", "a"},
        {"a.pvr/ccz", "a"},
        {"a.pvr\nccz", "a"},
        {"a_pvr.ccz", "a_pvr.ccz"},
        {"a.pkm\n", "a.pkm\n"},
        {"a.jpeg", "a.jpeg"},
        {".png", ""},
        {"png", "png"},
        {"", ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(PackedSprite(QString::fromUtf8(row[0]), 1).trimmedName(), QString::fromUtf8(row[1]))
            << row[0];
}
