// What a preview of a large project may do after a small change.

#include "TestJob.h"

#include <QDateTime>
#include <QFileInfo>
#include <QMap>

#include <gtest/gtest.h>

namespace {

QString u(const char* text) { return QString::fromUtf8(text); }

const QString layoutDidNotChange = QStringLiteral("2 Layout did not change.");

class Preview : public testing::Test {
protected:
    static constexpr int spriteCount = 2000;

    void SetUp() override {
        project.settings.setFileList({project.path(u("many"))});
        project.settings.globalSpriteSettings()->setTrimMode(SpriteSettings::TrimMode::Trim);
        ASSERT_TRUE(QDir(project.folder.path()).mkpath(u("many")));
        for (int number = 0; number < spriteCount; ++number)
            writeSprite(number, qRgb(number % 256, number / 256, 1));
    }

    static QString name(int number) { return QStringLiteral("%1.png").arg(number, 4, 10, QLatin1Char('0')); }
    QString file(int number) const { return project.path(u("many/") + name(number)); }

    /// A spot of the colour in a transparent frame, which trimming removes: each preparation makes an image.
    void writeSprite(int number, QRgb color) {
        QImage image(8, 8, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        for (int y = 2; y < 6; ++y) {
            for (int x = 2; x < 6; ++x)
                image.setPixel(x, y, color);
        }
        ASSERT_TRUE(image.save(file(number)));
    }

    /// Leaves nothing in the file that could be read, and its size and time as they are.
    void spoil(int number) {
        const QDateTime time = QFileInfo(file(number)).lastModified();
        QFile spoiled(file(number));
        ASSERT_TRUE(spoiled.open(QIODevice::ReadWrite));
        ASSERT_EQ(spoiled.write(QByteArray(static_cast<int>(spoiled.size()), 0)), spoiled.size());
        ASSERT_TRUE(spoiled.flush());
        ASSERT_TRUE(spoiled.setFileTime(time, QFileDevice::FileModificationTime));
    }

    QStringList preview() { return project.run(PackerJob::Preview); }

    /// By sprite name: where it lies, and which image it has; an image that is made anew has another key.
    QMap<QString, QPair<QPoint, qint64>> sprites() const {
        QMap<QString, QPair<QPoint, qint64>> found;
        for (const PackedTexture& texture : project.lastResult.textures()) {
            for (const PackedSprite& sprite : texture.allSprites())
                found.insert(sprite.fullName(), {sprite.position(), sprite.cachedImage().image().cacheKey()});
        }
        return found;
    }

    TestProject project;
};

} // namespace

TEST_F(Preview, readsAndPreparesOnlyWhatChanged) {
    preview();
    const auto before = sprites();
    ASSERT_EQ(before.size(), spriteCount);
    for (int number = 0; number < spriteCount; ++number)
        spoil(number);

    project.settings.setDataFormat(u("cocos2d"));
    QStringList log = preview();
    EXPECT_TRUE(log.contains(layoutDidNotChange));
    EXPECT_TRUE(log.filter(u("warning ")).isEmpty()) << "a spoiled file was read";
    EXPECT_EQ(sprites(), before);

    constexpr int changed = 1234;
    QFile::remove(file(changed));
    writeSprite(changed, qRgb(1, 2, 3));
    log = preview();
    EXPECT_TRUE(log.filter(u("warning ")).isEmpty()) << "a spoiled file was read";
    auto after = sprites();
    ASSERT_EQ(after.size(), spriteCount);
    EXPECT_EQ(after[name(changed)].first, before[name(changed)].first);
    EXPECT_NE(after[name(changed)].second, before[name(changed)].second);
    after[name(changed)] = before[name(changed)];
    EXPECT_EQ(after, before);

    // Spoiled files would be told of, and images that are made anew be seen.
    QFile(file(0)).remove();
    ASSERT_TRUE(QFile::copy(file(1), file(0)));
    EXPECT_EQ(preview().filter(u("warning ")).size(), 1);
    project.settings.globalSpriteSettings()->setInnerPadding(1);
    preview();
    EXPECT_NE(sprites()[name(1)].second, before[name(1)].second);
}
