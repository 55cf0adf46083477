#include "TestJob.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace {

QString u(const char* text) { return QString::fromUtf8(text); }

const QString nothingToDo = QStringLiteral("1 Nothing to do - sprite sheet not changed");

void touch(const QString& fileName) {
    QFile file(fileName);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(
        file.setFileTime(QDateTime::currentDateTime().addSecs(-1000), QFileDevice::FileModificationTime));
}

} // namespace

TEST(PackerJob, publishesInOrder) {
    TestProject project;
    const QStringList log = project.run();
    const QStringList expected = {u("2 Checking files and file system"),
                                  u("2 Loading images..."),
                                  u("2 Synchronizing sprite data"),
                                  u("2 Sorting"),
                                  u("2 Optimizing sprites"),
                                  u("2 Collecting aliases"),
                                  u("2 Calculating layout"),
                                  u("2 Best result: 16x64. Optimizing..."),
                                  u("sheet 16x64"),
                                  u("1 Resulting sprite sheet is 16x64."),
                                  u("1 Writing sprite sheet to ") + project.path(u("out/sheet.png")),
                                  u("1 Writing data for json to ") + project.path(u("out/sheet.json")),
                                  u("done")};
    QStringList steps;
    for (const QString& line : log) {
        if (!line.startsWith(u("2 Adding: ")))
            steps.append(line);
    }
    EXPECT_EQ(steps.join(u("\n")).toStdString(), expected.join(u("\n")).toStdString());
    const auto frames =
        QJsonDocument::fromJson(project.content(u("out/sheet.json"))).object().value(u("frames")).toObject();
    EXPECT_EQ(frames.keys(), (QStringList{u("blue.png"), u("red.png")}));
    EXPECT_EQ(QImage(project.path(u("out/sheet.png"))).size(), QSize(16, 64));
}

TEST(PackerJob, previewWritesNothing) {
    TestProject project;
    project.settings.addAutoSDSettings(new AutoSDSettings);
    project.settings.setMainExtension(u("sheet"));
    const QStringList log = project.run(PackerJob::Preview);
    EXPECT_EQ(log.filter(u("sheet ")).size(), 1);
    EXPECT_TRUE(log.last() == u("done"));
    EXPECT_FALSE(project.exists(u("out")));
    // The layout stays for the next job.
    EXPECT_TRUE(project.run(PackerJob::Preview).contains(u("2 Layout did not change.")));
    project.settings.setDataFormat(u("cocos2d"));
    EXPECT_TRUE(project.run(PackerJob::Preview).contains(u("2 Layout did not change.")));
    project.settings.setShapePadding(3);
    EXPECT_FALSE(project.run(PackerJob::Preview).contains(u("2 Layout did not change.")));
}

TEST(PackerJob, smartUpdate) {
    TestProject project;
    project.run();
    const QByteArray data = project.content(u("out/sheet.json"));
    touch(project.path(u("out/sheet.json")));
    const QDateTime written = QFileInfo(project.path(u("out/sheet.json"))).lastModified();

    QStringList log = project.run();
    EXPECT_TRUE(log.contains(nothingToDo));
    EXPECT_FALSE(log.contains(u("2 Calculating layout"))) << "a clean publish is remembered";
    EXPECT_EQ(QFileInfo(project.path(u("out/sheet.json"))).lastModified(), written);

    log = project.run(PackerJob::ForcePublish);
    EXPECT_FALSE(log.contains(nothingToDo));
    EXPECT_EQ(project.content(u("out/sheet.json")), data) << "equal input, equal bytes";

    ASSERT_TRUE(QFile::remove(project.path(u("out/sheet.png"))));
    EXPECT_FALSE(project.run().contains(nothingToDo));
    ASSERT_TRUE(project.exists(u("out/sheet.png")));
    ASSERT_TRUE(QFile::remove(project.path(u("out/sheet.json"))));
    EXPECT_FALSE(project.run().contains(nothingToDo));

    touch(project.path(u("sprites/red.png")));
    EXPECT_FALSE(project.run().contains(nothingToDo));
    EXPECT_TRUE(project.run().contains(nothingToDo));
    project.settings.setDpi(73);
    EXPECT_FALSE(project.run().contains(nothingToDo));
}

TEST(PackerJob, runsWithAWarningTakeTheLongWay) {
    TestProject project;
    project.settings.addFile(project.path(u("missing.png")));
    const QString warning = u("warning missing.png: Failed to load image: ") + project.path(u("missing.png"));
    EXPECT_TRUE(project.run().contains(warning));
    const QStringList log = project.run();
    EXPECT_TRUE(log.contains(warning));
    EXPECT_TRUE(log.contains(nothingToDo));
    EXPECT_TRUE(log.contains(u("2 Calculating layout")));
}

TEST(PackerJob, aliases) {
    TestProject project;
    project.addSprite(u("same.png"), QSize(20, 10), 0xffff0000);
    project.run();
    ASSERT_EQ(project.lastResult.textures().size(), 1);
    EXPECT_EQ(project.lastResult.textures().first().sprites().size(), 2);
    EXPECT_EQ(project.lastResult.textures().first().allSprites().size(), 3);
    EXPECT_TRUE(project.content(u("out/sheet.json")).contains("\"same.png\""));
    project.settings.setAutoAliasEnabled(false);
    project.run();
    EXPECT_EQ(project.lastResult.textures().first().sprites().size(), 3);
    // The same attempt, found again by names and sizes, has the sprites of now.
    project.settings.setAutoAliasEnabled(true);
    ASSERT_TRUE(QFile::remove(project.path(u("sprites/same.png"))));
    project.run();
    EXPECT_EQ(project.lastResult.textures().first().allSprites().size(), 2);
}

TEST(PackerJob, spritesThatDoNotFit) {
    TestProject project;
    project.settings.setMaxTextureSize(QSize(64, 64));
    project.addSprite(u("large.png"), QSize(100, 100), 0xff00ff00);
    const QStringList log = project.run();
    const int error = log.indexOf(u("error Not all sprites could be packed into the texture!"));
    ASSERT_GE(error, 0);
    EXPECT_EQ(log.value(error + 1), u("warning large.png"));
    EXPECT_TRUE(project.exists(u("out/sheet.png")));
    EXPECT_FALSE(project.content(u("out/sheet.json")).contains("large.png"));
}

TEST(PackerJob, faultsBeforeWritingLeaveThePairAlone) {
    TestProject project;
    project.run();
    const QByteArray data = project.content(u("out/sheet.json"));
    const QByteArray texture = project.content(u("out/sheet.png"));
    project.settings.setFixedTextureSize(QSize(33, 0));
    EXPECT_TRUE(project.run().contains(u("error Fixed size width is in conflict with size constraint POT.")));
    project.settings.setFixedTextureSize(QSize(-1, -1));
    project.settings.setDataFormat(u("nothing"));
    EXPECT_TRUE(project.run().contains(u("error Exporter with id nothing not found!")));
    project.settings.setDataFormat(u("json"));
    project.settings.setCommonDivisorX(0);
    EXPECT_TRUE(project.run().contains(u("error CommonDivisorX must be >= 1")));
    EXPECT_EQ(project.content(u("out/sheet.json")), data);
    EXPECT_EQ(project.content(u("out/sheet.png")), texture);
    project.settings.setCommonDivisorX(1);
    EXPECT_TRUE(project.run().contains(nothingToDo)) << "the queue goes on after a failed job";
}

TEST(PackerJob, failingWriterLeavesNoStalePair) {
    TestProject project;
    project.run();
    project.settings.setOutputFormat(SettingsBase::OutputFormat::ALPHA_INTENSITY);
    EXPECT_TRUE(project.run().contains(u("error This texture format can not be used with png/jpg/bmp.")));
    EXPECT_FALSE(project.exists(u("out/sheet.png")));
    EXPECT_FALSE(project.exists(u("out/sheet.json")));

    project.settings.setOutputFormat(SettingsBase::OutputFormat::RGBA8888);
    ASSERT_TRUE(QDir(project.folder.path()).mkpath(u("taken.json")));
    project.settings.setDataFileName(project.path(u("taken.json")));
    const QStringList log = project.run();
    EXPECT_EQ(log.filter(u("error Failed to write json file ")).size(), 1) << qPrintable(log.join(u("\n")));
    EXPECT_TRUE(QFileInfo(project.path(u("taken.json"))).isDir());
}

TEST(PackerJob, abortWhileLoadingEndsAfterTheTreeReports) {
    TestProject project;
    const QStringList log = project.run(PackerJob::Publish, [](PackerJob& job) {
        QObject::connect(&job, &PackerJob::activity, &job, [&job](int, const QString& text) {
            if (text == QLatin1String("Loading images..."))
                job.abort();
        });
    });
    EXPECT_TRUE(log.contains(u("0 Aborting...")));
    EXPECT_FALSE(log.contains(u("2 Synchronizing sprite data")));
    EXPECT_EQ(log.last(), u("done"));
    EXPECT_FALSE(project.exists(u("out")));
    EXPECT_TRUE(project.run().contains(u("sheet 16x64"))) << "the next job is a whole one";
}

TEST(PackerJob, jobWithoutSprites) {
    TestProject project;
    project.run();
    project.settings.setFileList({project.path(u("empty"))});
    ASSERT_TRUE(QDir(project.folder.path()).mkpath(u("empty")));
    const QStringList log = project.run();
    EXPECT_TRUE(log.contains(u("sheet 0x0")));
    EXPECT_EQ(log.filter(u("warning No sprites found")).size(), 1);
    EXPECT_FALSE(project.exists(u("out/sheet.png")));
}

TEST(PackerJob, outputAmongTheSources) {
    TestProject project;
    project.settings.setTextureFileName(project.path(u("sprites/sheet.png")));
    const QStringList log = project.run();
    ASSERT_EQ(log.filter(u("warning ")).size(), 1);
    EXPECT_TRUE(log.filter(u("warning ")).first().contains(u("--ignore-files")));
    project.settings.addIgnoreFileList(u("*/sheet.png"));
    EXPECT_TRUE(project.run().filter(u("warning ")).isEmpty());
}

TEST(PackerJob, variants) {
    TestProject project;
    project.settings.setTextureFileName(project.path(u("out/sheet@2x.png")));
    project.settings.setDataFileName(project.path(u("out/sheet@2x.json")));
    project.settings.setMainExtension(u("@2x"));
    auto* half = new AutoSDSettings;
    half->setScale(0.5);
    project.settings.addAutoSDSettings(half);
    QStringList log = project.run();
    EXPECT_EQ(log.filter(u("sheet ")).filter(QRegExp(u("^sheet "))).size(), 2);
    EXPECT_TRUE(project.exists(u("out/sheet@2x.png")));
    EXPECT_TRUE(project.exists(u("out/sheet.json")));
    EXPECT_EQ(project.run().count(nothingToDo), 2);

    project.settings.setForceIdenticalLayout(true);
    log = project.run();
    const QSize large = QImage(project.path(u("out/sheet@2x.png"))).size();
    EXPECT_EQ(QImage(project.path(u("out/sheet.png"))).size() * 2, large);
    // The main sheet is current the second time, the derived one is written whenever a job reaches it.
    log = project.run();
    EXPECT_EQ(log.count(nothingToDo), 1);
    EXPECT_TRUE(log.contains(u("1 Writing sprite sheet to ") + project.path(u("out/sheet.png"))));

    // Nothing is left of the sprites, which keep the images that they have.
    project.settings.setForceIdenticalLayout(false);
    half->setScale(0.01);
    EXPECT_EQ(project.run(PackerJob::ForcePublish).filter(u("Its image of the former sheet")).size(), 2);
}
