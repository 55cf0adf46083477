#include "SpriteTreeTest.h"

#include "SpriteFolderNode.h"

#include <QDateTime>
#include <QFile>

#include <gmock/gmock.h>

#include <cstdio>

using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(SpriteTreeTest, namesAndOrder) {
    for (const char* name : {"assets/b.PNG", "assets/A.png", "assets/c.png", "assets/sub/z.png",
                             "assets/my.dir/deep/x.png", "assets/.hidden.png", "single.dat"})
        file(QString::fromLatin1(name));
    QFile(path("assets/note.txt"_q)).open(QIODevice::WriteOnly);
    update({path("assets"_q), path("single.dat"_q)});
    EXPECT_THAT(names(), ElementsAre("A.png", "b.PNG", "c.png", "my/deep/x.png", "sub/z.png", "single.dat"));

    const QList<SpriteTreeNode*> top = model.root()->children();
    ASSERT_EQ(top.size(), 2);
    auto* assets = dynamic_cast<SpriteFolderNode*>(top[0]);
    ASSERT_TRUE(assets);
    EXPECT_EQ(assets->spriteName(), "/assets"_q);
    EXPECT_EQ(assets->fileName(), path("assets"_q));
    EXPECT_TRUE(assets->topLevel() && top[1]->topLevel());
    EXPECT_FALSE(assets->nested());
    SpriteFolderNode* inner = assets->folder("my.dir"_q);
    ASSERT_TRUE(inner);
    EXPECT_TRUE(inner->nested());
    EXPECT_FALSE(inner->topLevel());
    EXPECT_EQ(inner->spriteName(), "my//my.dir"_q);
    EXPECT_TRUE(log.startsWith("Adding: %1\n"_q.arg(path("assets/A.png"_q)))) << log.toStdString();
}

TEST_F(SpriteTreeTest, equalNamesButForCaseHaveAnOrder) {
    for (const char* name : {"f/b.png", "f/B.png", "f/a.PNG", "f/a.png", "f/A.png"})
        file(QString::fromLatin1(name));
    update({path("f"_q)});
    EXPECT_THAT(names(), ElementsAre("A.png", "a.PNG", "a.png", "B.png", "b.png"));
}

TEST_F(SpriteTreeTest, linkToAnOuterFolderIsNotFollowed) {
    file("f/a.png"_q);
    file("g/b.png"_q);
    ASSERT_TRUE(QFile::link(path("f"_q), path("f/loop"_q)));
    ASSERT_TRUE(QFile::link(path("g"_q), path("f/other"_q)));
    ASSERT_TRUE(QFile::link(path("f"_q), path("g/back"_q)));
    update({path("f"_q)});
    EXPECT_THAT(names(), ElementsAre("a.png", "other/b.png"));
}

TEST_F(SpriteTreeTest, namesThatLeadNowhereAreLeftOut) {
    file("f/a.png"_q);
    file("f/a.b.PVR.Ccz"_q);
    QDir(folder.path()).mkpath("out/in"_q);
    file("out/c.png"_q);
    ASSERT_TRUE(QFile::link(path("gone.png"_q), path("f/dangling.png"_q)));
    const QByteArray undecodable = QFile::encodeName(path("f/"_q)) + "bad\xff.png";
    ASSERT_EQ(std::rename(QFile::encodeName(file("f/b.png"_q)).constData(), undecodable.constData()), 0);
    update({path("f"_q)});
    EXPECT_THAT(names(), ElementsAre("a.b.PVR.Ccz", "a.png"));
    // The system's way up, not the text's.
    ASSERT_TRUE(QFile::link(path("out/in"_q), path("f/link"_q)));
    update({path("f/link/.."_q)});
    EXPECT_THAT(names(), ElementsAre("c.png"));
}

TEST_F(SpriteTreeTest, rescanKeepsNodesAndReadsOnlyWhatChanged) {
    file("f/b.png"_q, 0xff000001);
    file("f/c.png"_q, 0xff000002);
    update({path("f"_q)});
    load();
    EXPECT_TRUE(log.endsWith("Loading images...\n"_q));
    const QList<SpriteImageNode*> before = model.sprites();
    EXPECT_TRUE(before[0]->changed());
    const QImage image = before[0]->image().image();
    EXPECT_EQ(image.pixel(0, 0), 0xff000001);

    update({path("f"_q)});
    load();
    EXPECT_EQ(model.sprites(), before);
    EXPECT_FALSE(before[0]->changed() || before[1]->changed());
    EXPECT_EQ(before[0]->image().image().constBits(), image.constBits());

    file("f/c.png"_q, 0x80ffffff); // another size in bytes or another time
    QFile touched(path("f/c.png"_q));
    ASSERT_TRUE(touched.open(QIODevice::ReadWrite));
    touched.setFileTime(QDateTime::fromSecsSinceEpoch(1'000'000'000), QFileDevice::FileModificationTime);
    touched.close();
    file("f/a.png"_q);
    QFile::remove(path("f/b.png"_q));
    update({path("f"_q)});
    EXPECT_EQ(before[0]->spriteName(), "b.png"_q) << "out of the tree, and alive until the next update";
    load();
    EXPECT_THAT(names(), ElementsAre("c.png", "a.png")) << "new ones come behind the old ones";
    EXPECT_EQ(model.sprites()[0], before[1]);
    EXPECT_TRUE(before[1]->changed());
    EXPECT_EQ(before[1]->image().image().pixel(0, 0), 0x80ffffff);
}

TEST_F(SpriteTreeTest, sameNameAtAnotherPath) {
    const QString first = file("one/f/a.png"_q, 0xff000001), second = file("two/f/a.png"_q, 0xff000002);
    file("two/f/b.png"_q);
    // Within one scan the first path wins: the folders share a node, and so do the files.
    update({path("one/f"_q), path("two/f"_q), first, second});
    load();
    EXPECT_THAT(names(), ElementsAre("a.png", "b.png", "a.png"));
    EXPECT_EQ(model.sprites()[0]->fileName(), first);
    EXPECT_EQ(model.sprites()[2]->fileName(), first);

    // Another project in the same run must not get the images of this one.
    for (const QStringList& entries : {QStringList{path("two/f"_q)}, QStringList{second}}) {
        update(entries);
        load();
        EXPECT_EQ(model.sprites()[0]->fileName(), second);
        EXPECT_EQ(model.sprites()[0]->image().image().pixel(0, 0), 0xff000002);
    }
    EXPECT_THAT(names(), ElementsAre("a.png"));
}

TEST_F(SpriteTreeTest, ignoredFiles) {
    for (const char* name : {"f/a.png", "f/sub/a.png", "f/b.png"})
        file(QString::fromLatin1(name));
    settings.setIgnoreFileList({"a.png"_q, "*.PNG"_q});
    update({path("f"_q)});
    EXPECT_THAT(names(), ElementsAre("a.png", "b.png", "sub/a.png"))
        << "the whole path has to match, in its case";
    settings.setIgnoreFileList({"nothing"_q, "*/sub/*"_q});
    log.clear();
    update({path("f"_q)});
    EXPECT_THAT(names(), ElementsAre("a.png", "b.png"));
    EXPECT_EQ(log, "Ignoring file due to --ignore-files: %1\n"_q.arg(path("f/sub/a.png"_q)));
    settings.setIgnoreFileList({"*.png"_q});
    update({path("f"_q), path("f/a.png"_q)});
    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(SpriteTreeTest, replaceRules) {
    const QString a = file("f/aa.png"_q);
    file("f/sub/b.png"_q);
    settings.setReplaceList({"^a="_q, "sub/(.)=\\1/"_q, "A=x"_q});
    update({path("f"_q)});
    EXPECT_THAT(names(), ElementsAre("a.png", "b/.png"));
    EXPECT_TRUE(log.startsWith("Renamed aa.png => a.png\nAdding: %1\n"_q.arg(a))) << log.toStdString();
    settings.setReplaceList({"a=q"_q});
    update({path("f"_q)});
    EXPECT_THAT(names(), ElementsAre("a.png", "b/.png")) << "an existing node keeps its name";
}

TEST_F(SpriteTreeTest, badReplaceRulesShowAtTheFirstFile) {
    const QString a = file("f/a.png"_q);
    QDir().mkpath(path("empty"_q));
    for (const QString& rule : {"norule"_q, "a=b=c"_q}) {
        settings.setReplaceList({"x=y"_q, rule});
        QString message;
        EXPECT_EQ(updateError({path("empty"_q)}, &message), 0);
        EXPECT_EQ(updateError({a}, &message), 36);
        EXPECT_EQ(message, "Format for replacement: <regexp>=<string>"_q);
    }
    settings.setReplaceList({});
    update({a});
    EXPECT_THAT(names(), ElementsAre("a.png")) << "the next scan works";
}

TEST_F(SpriteTreeTest, moviesNeedAPlayer) {
    QDir().mkpath(path("f"_q));
    QFile(path("f/movie.SWF"_q)).open(QIODevice::WriteOnly);
    QString message;
    EXPECT_EQ(updateError({path("f"_q)}, &message), 36);
    EXPECT_EQ(message, "When using Flash importer from command line you must specify --enable-swf-import"_q);
}
