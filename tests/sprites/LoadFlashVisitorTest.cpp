#include "LoadFlashVisitor.h"

#include "SpriteTreeTest.h"

#include <QFile>

namespace {

// Stands for the room that plays movies; the test gives the answers.
class Server : public QObject {
    Q_OBJECT

public:
    QString asked;

public slots:
    void newFlashLoader(const QString& fileName, SpriteFlashNode*, QObject*) { asked = fileName; }
};

// The side of the tree that takes a movie's frames; the player is played by the test.
class LoadFlashVisitorTest : public testing::Test {
protected:
    LoadFlashVisitorTest() {
        const QString file = path();
        QFile(file).open(QIODevice::WriteOnly);
        auto owned = std::make_unique<SpriteFlashNode>("dir/m.swf"_q, "m.swf"_q, FileData(file));
        movie = owned.get();
        root.append(std::move(owned));
    }

    QString path() const { return folder.filePath("m.swf"_q); }

    QTemporaryDir folder;
    QMutex mutex;
    SpriteBranchNode::Removed removed;
    SpriteBranchNode root;
    SpriteFlashNode* movie = nullptr;
};

} // namespace

TEST_F(LoadFlashVisitorTest, failsWithoutAPlayer) {
    LoadFlashVisitor orphan(mutex, removed, nullptr);
    EXPECT_FALSE(orphan.start(root)) << "nobody to play it";
    EXPECT_EQ(movie->errorClass(), SpriteTreeNode::ErrorClass::LoadFailure);
    EXPECT_FALSE(orphan.start(root)) << "unchanged";
}

TEST_F(LoadFlashVisitorTest, takesFrames) {
    movie->setError(SpriteTreeNode::ErrorClass::LoadFailure, "before"_q);
    Server server;
    LoadFlashVisitor::setServer(&server);
    auto* visitor = new LoadFlashVisitor(mutex, removed, &server);
    int finished = 0;
    QObject::connect(visitor, &LoadFlashVisitor::allFlashLoaded, [&] { ++finished; });
    EXPECT_TRUE(visitor->start(root));
    EXPECT_EQ(server.asked, path());
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

#include "LoadFlashVisitorTest.moc"
