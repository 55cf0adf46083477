#include "FillResult.h"
#include "TestSprites.h"

#include <gtest/gtest.h>

namespace {

PackedSprite packed(const QString& name, int id, QSize paddedSize, bool rotated = false) {
    PackedSprite sprite(name, id);
    sprite.setPosition({0, 0});
    sprite.setPaddedSize(paddedSize);
    sprite.setRotated(rotated);
    return sprite;
}

PackedResult resultOf(QSize size, int rotatedSprites, int unplacedSprites) {
    PackedTexture texture(0, 0);
    texture.setSize(size);
    for (int i = 0; i < rotatedSprites; ++i)
        texture.add(packed(QStringLiteral("r"), i, {1, 1}, true));
    PackedResult result;
    result.addTexture(texture);
    for (int i = 0; i < unplacedSprites; ++i)
        result.addUnplaced(PackedSprite(QStringLiteral("u"), 100 + i));
    return result;
}

QStringList names(const QList<PackedSprite>& sprites) {
    QStringList list;
    for (const PackedSprite& sprite : sprites)
        list.append(sprite.fullName());
    return list;
}

} // namespace

TEST(PackedTexture, listsSpritesAndTheirAliases) {
    PackedSprite owner = packed(QStringLiteral("owner"), 1, {10, 20});
    owner.addAlias(PackedSprite(QStringLiteral("twin"), 2));
    PackedTexture texture(3, 2);
    EXPECT_EQ(texture.size(), QSize(-1, -1));
    texture.setSize({100, 50});
    texture.add(owner);
    texture.add(packed(QStringLiteral("other"), 3, {5, 5}));
    EXPECT_EQ(names(texture.sprites()), QStringList({QStringLiteral("owner"), QStringLiteral("other")}));
    EXPECT_EQ(names(texture.allSprites()),
              QStringList({QStringLiteral("owner"), QStringLiteral("twin"), QStringLiteral("other")}));
    ASSERT_EQ(texture.spritesById().size(), 3);
    EXPECT_EQ(texture.spritesById().value(2).fullName(), QStringLiteral("twin"));
    EXPECT_EQ(texture.area(), 5000);
    EXPECT_EQ(texture.freeArea(), (50 - 6 + 2) * (100 - 6 + 2) - 10 * 20 - 5 * 5);
}

TEST(PackedResult, measuresBeyondIntegers) {
    const PackedResult empty;
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_TRUE(empty.allPlaced());
    EXPECT_EQ(empty.totalArea(), 0);

    const PackedResult half = [] {
        PackedResult result = resultOf({20, 10}, 0, 0);
        PackedTexture(result.textures().first()).add(packed(QStringLiteral("s"), 9, {10, 10}));
        return result;
    }();
    EXPECT_EQ(half.totalFreeArea(), 100);
    EXPECT_FLOAT_EQ(half.freeRatio(), 0.5F);

    PackedResult huge = resultOf({2147483647, 2147483647}, 0, 0);
    EXPECT_EQ(huge.totalArea(), qint64{2147483647} * 2147483647);
    for (int i = 0; i < 4; ++i)
        huge.addTexture(huge.textures().first());
    EXPECT_EQ(huge.totalArea(), std::numeric_limits<qint64>::max());
    PackedTexture absurd(-2147483647 - 1, 2147483647);
    absurd.setSize({2147483647, 2147483647});
    EXPECT_EQ(absurd.freeArea(), std::numeric_limits<qint64>::max());
}

TEST(PackedResult, knowsTheBetterOfTwo) {
    const PackedResult none;
    // From the best to the worst.
    const PackedResult order[] = {
        resultOf({10, 10}, 0, 0), resultOf({10, 10}, 1, 0), resultOf({10, 11}, 0, 0),
        resultOf({10, 11}, 2, 0), resultOf({1, 1}, 0, 1),   resultOf({1, 1}, 3, 1),
        resultOf({2, 1}, 0, 1),   resultOf({1, 1}, 0, 2),   none};
    for (size_t i = 0; i < std::size(order); ++i) {
        for (size_t j = 0; j < std::size(order); ++j)
            EXPECT_EQ(order[i].isBetterThan(order[j]), i < j) << i << ' ' << j;
    }
    // The sides play no part.
    EXPECT_FALSE(resultOf({5, 20}, 0, 0).isBetterThan(resultOf({10, 10}, 0, 0)));
    EXPECT_FALSE(resultOf({10, 10}, 0, 0).isBetterThan(resultOf({5, 20}, 0, 0)));
}

TEST(FillResult, bringsSpriteDataToEveryEntry) {
    Sprite owner = makeSprite(QStringLiteral("owner"), {30, 10});
    const Sprite twin = makeSprite(QStringLiteral("twin"), {30, 10});
    const Sprite lost = makeSprite(QStringLiteral("lost"), {99, 99});
    owner.addAlias(twin);

    PackedResult attempt;
    PackedSprite placed = makePackedSprite(owner);
    placed.setPosition({4, 5});
    placed.setRotated(true);
    PackedTexture texture(2, 2);
    texture.setSize({64, 64});
    texture.add(placed);
    attempt.addTexture(texture);
    PackedSprite unplaced = makePackedSprite(lost);
    unplaced.setRotated(true);
    attempt.addUnplaced(unplaced);

    PackedResult result = attempt;
    fillResult(result, {lost, owner, twin}, PackedSprite::CounterClockwise);

    // Through the shared records, to the attempt as well.
    const PackedSprite sprite = attempt.textures().first().sprites().first();
    EXPECT_EQ(sprite.size(), QSize(30, 10));
    EXPECT_EQ(sprite.untrimmedSize(), QSize(30, 10));
    EXPECT_EQ(sprite.textureSize(), QSize(64, 64));
    EXPECT_EQ(sprite.rotationDirection(), 1);
    EXPECT_EQ(sprite.cachedImage().size(), QSize(30, 10));
    EXPECT_EQ(sprite.fileData().path(), QStringLiteral("owner.png"));
    EXPECT_TRUE(sprite.rotated());

    const PackedSprite alias = attempt.textures().first().spritesById().value(twin.id());
    EXPECT_EQ(alias.fullName(), QStringLiteral("twin"));
    EXPECT_EQ(alias.position(), QPoint(4, 5));
    EXPECT_TRUE(alias.rotated());
    EXPECT_TRUE(alias.cachedImage().isNull());
    EXPECT_EQ(alias.size(), QSize(30, 10));
    EXPECT_EQ(alias.textureSize(), QSize(64, 64));
    EXPECT_EQ(alias.fileData().path(), QStringLiteral("twin.png"));

    EXPECT_FALSE(attempt.unplaced().first().rotated());
    EXPECT_EQ(attempt.unplaced().first().size(), QSize(99, 99));
}

TEST(FillResult, followsSpritesThatWereMadeAnew) {
    Sprite before = makeSprite(QStringLiteral("a"), {8, 8});
    before.addAlias(makeSprite(QStringLiteral("gone"), {8, 8}));
    PackedSprite placed = makePackedSprite(before);
    placed.setPosition({0, 0});
    PackedTexture texture(0, 0);
    texture.setSize({8, 8});
    texture.add(placed);
    PackedResult result;
    result.addTexture(texture);

    Sprite after = makeSprite(QStringLiteral("a"), {8, 8});
    const Sprite come = makeSprite(QStringLiteral("come"), {8, 8});
    after.addAlias(come);
    fillResult(result, {after, come}, 0);
    const PackedTexture filled = result.textures().first();
    EXPECT_EQ(names(filled.allSprites()), QStringList({QStringLiteral("a"), QStringLiteral("come")}));
    EXPECT_EQ(filled.sprites().first().id(), after.id());
    EXPECT_EQ(filled.spritesById().size(), 2);
    EXPECT_EQ(filled.spritesById().value(come.id()).position(), QPoint(0, 0));
    EXPECT_TRUE(filled.spritesById().value(come.id()).alias());
}

TEST(FillResult, leavesAClonedResultAlone) {
    const Sprite sprite = makeSprite(QStringLiteral("a"), {8, 8});
    PackedTexture texture(0, 0);
    texture.setSize({8, 8});
    texture.add(makePackedSprite(sprite));
    PackedResult attempt;
    attempt.addTexture(texture);
    attempt.addUnplaced(makePackedSprite(sprite));
    PackedResult result = attempt.clone();
    fillResult(result, {sprite}, 0);
    EXPECT_EQ(result.textures().first().sprites().first().size(), QSize(8, 8));
    EXPECT_EQ(result.textures().first().size(), QSize(8, 8));
    EXPECT_TRUE(attempt.textures().first().sprites().first().cachedImage().isNull());
    EXPECT_TRUE(attempt.unplaced().first().cachedImage().isNull());
}
