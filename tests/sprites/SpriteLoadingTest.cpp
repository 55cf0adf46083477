#include "SpriteTreeTest.h"

#include "SpriteFileNode.h"

#include <QDateTime>
#include <QFile>
#include <QLocale>

TEST_F(SpriteTreeTest, errorsOfSprites) {
    file("f/a.png"_q);
    file("f/b.png"_q);
    file("f/c.png"_q);
    const QString used = "1Sprite name already in use"_q;
    settings.setReplaceList({"b=a"_q});
    update({path("f"_q)});
    EXPECT_EQ(errors(), used + used + "0"_q);
    // A higher error hides the lower one, which is forgotten.
    QFile(path("f/b.png"_q)).resize(10);
    load();
    const QString failed = "2Failed to load image: %1"_q.arg(path("f/b.png"_q));
    EXPECT_EQ(errors(), used + failed + "0"_q);
    EXPECT_TRUE(model.sprites()[1]->image().isNull());
    load();
    EXPECT_EQ(errors(), used + failed + "0"_q) << "a file that is still broken isn't read again";
    file("f/b.png"_q);
    load();
    EXPECT_EQ(errors(), used + "00"_q);
    QFile::remove(path("f/b.png"_q));
    update({path("f"_q)});
    EXPECT_EQ(errors(), "00"_q);
}

TEST_F(SpriteTreeTest, filesThatAreNoPictures) {
    QFile(path("note.txt"_q)).open(QIODevice::WriteOnly);
    update({path("note.txt"_q), path("missing.png"_q), path("gone"_q)});
    load();
    EXPECT_EQ(errors(), "2Failed to load image: %1/note.txt2Failed to load image: %1/missing.png"
                        "2Failed to load image: %1/gone"_q.arg(folder.path()));
    EXPECT_TRUE(sprite("missing.png"_q)->changed());
    load();
    EXPECT_FALSE(sprite("missing.png"_q)->changed());
    file("missing.png"_q);
    load();
    EXPECT_EQ(sprite("missing.png"_q)->errorText(), QString());
}

TEST_F(SpriteTreeTest, transparentPixelsAreNormalised) {
    QImage image(2, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, 0x00ff8800);
    image.setPixel(1, 0, 0x01ff8800);
    ASSERT_TRUE(image.save(path("a.png"_q)));
    ASSERT_TRUE(image.convertToFormat(QImage::Format_RGB32).save(path("b.bmp"_q)));
    update({path("a.png"_q), path("b.bmp"_q)});
    load();
    const QImage a = sprite("a.png"_q)->image().image(), b = sprite("b.bmp"_q)->image().image();
    EXPECT_EQ(a.format(), QImage::Format_ARGB32);
    EXPECT_EQ(reinterpret_cast<const QRgb*>(a.constScanLine(0))[0], 0u);
    EXPECT_EQ(reinterpret_cast<const QRgb*>(a.constScanLine(0))[1], 0x01ff8800);
    EXPECT_EQ(b.format(), QImage::Format_ARGB32);
    EXPECT_EQ(b.pixel(0, 0), 0xffff8800);
}

TEST_F(SpriteTreeTest, largePicturesInSmallFilesAreReadEach) {
    // Small files are read in one go, unless their pictures are large.
    QImage image(1100, 1100, QImage::Format_ARGB32);
    QStringList paths;
    for (int i = 1; i <= 7; ++i) {
        file("%1.png"_q.arg(i), QRgb(i));
        image.fill(0xff000000U + QRgb(i));
        paths << path("%1.png"_q.arg(i)) << path("large%1.png"_q.arg(i));
        ASSERT_TRUE(image.save(paths.last(), "png"));
        ASSERT_LT(QFileInfo(paths.last()).size(), 8'000);
    }
    update(paths);
    load();
    for (int i = 1; i <= 7; ++i) {
        EXPECT_EQ(sprite("%1.png"_q.arg(i))->image().image().pixel(0, 0), 0U) << "transparent";
        EXPECT_EQ(sprite("large%1.png"_q.arg(i))->image().image().pixel(1099, 1099), 0xff000000U + QRgb(i));
    }
}

TEST_F(SpriteTreeTest, iconsAreSmallPictures) {
    QImage image(100, 50, QImage::Format_ARGB32);
    image.fill(0xff00ff00);
    ASSERT_TRUE(image.save(path("a.png"_q)));
    update({path("a.png"_q)});
    SpriteImageNode* node = sprite("a.png"_q);
    EXPECT_EQ(node->icon().pixel(12, 12), 0u) << "nothing loaded yet";
    load();
    const QImage icon = node->icon();
    EXPECT_EQ(icon.size(), QSize(24, 24));
    EXPECT_EQ(icon.pixel(12, 12), 0xff00ff00);
    EXPECT_EQ(icon.pixel(12, 5), 0u);
    EXPECT_EQ(icon.pixel(12, 6), 0xff00ff00) << "24 x 12 pixels in the middle";
    EXPECT_EQ(icon.pixel(12, 18), 0u);
}

TEST_F(SpriteTreeTest, hashTextTellsTheFiles) {
    const QString a = file("f/a.png"_q);
    file("f/sub/%1.png"_q);
    update({path("f"_q)});
    EXPECT_EQ(model.hashText().split('\n').first(), a + "|-1||"_q) << "not looked at yet";
    const QByteArray ahead = model.currentHashText();
    load();
    EXPECT_EQ(model.hashText(), ahead);
    const QStringList lines = QString::fromUtf8(model.hashText()).split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[2].isEmpty());
    const QFileInfo info(a);
    const QString form = "ddd MMM d HH:mm:ss yyyy"_q;
    EXPECT_EQ(lines[0],
              QStringList({a, QString::number(info.size()), QLocale::c().toString(info.lastModified(), form),
                           QLocale::c().toString(info.birthTime(), form)})
                  .join('|'));
    EXPECT_TRUE(lines[1].startsWith(path("f/sub/%1.png|"_q)));

    QFile::remove(a);
    EXPECT_EQ(model.hashText(), ahead) << "what was loaded";
    EXPECT_EQ(model.currentHashText().split('\n').first(), a + "|0||"_q);
}

TEST_F(SpriteTreeTest, interruptedLoadIsMadeUpFor) {
    SpriteFileNode node("a.png"_q, "a.png"_q, FileData(file("a.png"_q)));
    EXPECT_TRUE(node.needsReading());
    EXPECT_TRUE(node.needsReading()) << "the change was noted, but no image was taken";
    node.load();
    EXPECT_FALSE(node.image().isNull());
    EXPECT_FALSE(node.needsReading());
}

TEST_F(SpriteTreeTest, manyFilesComeInOrder) {
    QStringList expected;
    for (int i = 0; i < 300; ++i) {
        const QString name = "f/%1.png"_q.arg(i, 3, 10, QLatin1Char('0'));
        file(name, 0xff000000 + QRgb(i));
        if (i % 50 == 7)
            QFile(path(name)).resize(20);
    }
    update({path("f"_q)});
    load();
    const QList<SpriteImageNode*> sprites = model.sprites();
    ASSERT_EQ(sprites.size(), 300);
    for (int i = 0; i < 300; ++i) {
        if (i % 50 == 7)
            EXPECT_TRUE(sprites[i]->image().isNull()) << i;
        else
            EXPECT_EQ(sprites[i]->image().image().pixel(0, 0), 0xff000000 + QRgb(i));
    }
}
