#include "Error.h"
#include "LoadFlashVisitor.h"
#include "Settings.h"
#include "SpriteFileNode.h"
#include "SpriteFileTreeModel.h"
#include "SpriteFolderNode.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLocale>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SpriteTreeTest : public testing::Test {
protected:
    SpriteTreeTest() {
        QObject::connect(&model, &SpriteFileTreeModel::activity, [this](int level, const QString& message) {
            EXPECT_EQ(level, 2);
            log += message + QLatin1Char('\n');
        });
        QObject::connect(&model, &SpriteFileTreeModel::loadingDone, [this] { ++doneCount; });
    }

    QString path(const QString& name) const { return folder.filePath(name); }

    // A file of that name with a picture of that colour.
    QString file(const QString& name, QRgb color = 0xff112233) {
        QDir(folder.path()).mkpath(QFileInfo(path(name)).path());
        QImage image(3, 2, QImage::Format_ARGB32);
        image.fill(color);
        EXPECT_TRUE(image.save(path(name), "png"));
        return path(name);
    }

    void update(const QStringList& entries) {
        GFileNameList list;
        for (const QString& entry : entries)
            list.append(entry);
        settings.setFileList(list);
        model.update(&settings);
    }

    void load() {
        const int before = doneCount;
        model.loadSprites();
        EXPECT_EQ(doneCount, before) << "the report comes from the event loop";
        QCoreApplication::processEvents();
        EXPECT_EQ(doneCount, before + 1);
    }

    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const SpriteImageNode* sprite : model.sprites())
            all.push_back(sprite->spriteName().toStdString());
        return all;
    }

    SpriteImageNode* sprite(const QString& name) const {
        for (SpriteImageNode* node : model.sprites())
            if (node->spriteName() == name)
                return node;
        return nullptr;
    }

    QString errors() const {
        QString all;
        for (const SpriteImageNode* node : model.sprites())
            all += QString::number(int(node->errorClass())) + node->errorText();
        return all;
    }

    int updateError(const QStringList& entries, QString* message) {
        try {
            update(entries);
        } catch (const Error& error) {
            *message = error.message();
            EXPECT_TRUE(model.tryLock()) << "an error leaves the lock free";
            model.unlock();
            return error.code();
        }
        return 0;
    }

    QTemporaryDir folder;
    Settings settings;
    SpriteFileTreeModel model;
    QString log;
    int doneCount = 0;
};

// Stands for the room that plays movies; the test gives the answers.
class Server : public QObject {
    Q_OBJECT

public:
    QString asked;

public slots:
    void newFlashLoader(const QString& fileName, SpriteFlashNode*, QObject*) { asked = fileName; }
};

QString operator""_q(const char* text, size_t size) { return QString::fromUtf8(text, int(size)); }

} // namespace

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
    const QString ahead = model.currentHashText();
    load();
    EXPECT_EQ(model.hashText(), ahead);
    const QStringList lines = model.hashText().split('\n');
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

// The side of the tree that takes a movie's frames; the player is played by the test.
TEST(LoadFlashVisitorTest, takesFrames) {
    QTemporaryDir folder;
    QFile(folder.filePath("m.swf"_q)).open(QIODevice::WriteOnly);
    QMutex mutex;
    SpriteBranchNode::Removed removed;
    SpriteBranchNode root;
    auto owned =
        std::make_unique<SpriteFlashNode>("dir/m.swf"_q, "m.swf"_q, FileData(folder.filePath("m.swf"_q)));
    SpriteFlashNode* movie = owned.get();
    root.append(std::move(owned));

    LoadFlashVisitor orphan(mutex, removed, nullptr);
    EXPECT_FALSE(orphan.start(root)) << "nobody to play it";
    EXPECT_EQ(movie->errorClass(), SpriteTreeNode::ErrorClass::LoadFailure);
    EXPECT_FALSE(orphan.start(root)) << "unchanged";
    ASSERT_TRUE(QFile(folder.filePath("m.swf"_q)).resize(5));

    Server server;
    LoadFlashVisitor::setServer(&server);
    auto* visitor = new LoadFlashVisitor(mutex, removed, &server);
    int finished = 0;
    QObject::connect(visitor, &LoadFlashVisitor::allFlashLoaded, [&] { ++finished; });
    EXPECT_TRUE(visitor->start(root));
    EXPECT_EQ(server.asked, folder.filePath("m.swf"_q));
    QImage frame(1, 1, QImage::Format_ARGB32);
    frame.fill(0x00ffffff);
    visitor->reserve(movie, 12);
    ASSERT_EQ(movie->children().size(), 12);
    EXPECT_EQ(movie->children()[11]->spriteName(), "dir/m.swf/0011"_q);
    EXPECT_EQ(movie->children()[11]->displayName(), "0011"_q);
    visitor->setImage(movie, 11, frame);
    visitor->setImage(movie, 12, frame);
    EXPECT_EQ(static_cast<SpriteImageNode*>(movie->children()[11])->image().image().pixel(0, 0), 0u);
    EXPECT_EQ(movie->errorClass(), SpriteTreeNode::ErrorClass::None);
    SpriteTreeNode* first = movie->children()[0];
    visitor->reserve(movie, 3);
    EXPECT_EQ(movie->children().size(), 3);
    EXPECT_EQ(movie->children()[0], first);
    EXPECT_EQ(removed.size(), 9u);
    visitor->setError(movie, -1, SpriteTreeNode::ErrorClass::LoadFailure, "broken"_q);
    EXPECT_EQ(movie->errorText(), "broken"_q);
    EXPECT_TRUE(movie->children().isEmpty());
    visitor->done(movie);
    EXPECT_EQ(finished, 1);
    visitor->reserve(movie, 3);
    EXPECT_TRUE(movie->children().isEmpty()) << "not asked for any more";
}

#include "SpriteTreeTest.moc"
