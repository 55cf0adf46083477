// What goes wrong around a run on a build machine.

#include "Program.h"

#include <QDateTime>
#include <QDirIterator>
#include <QRegularExpression>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <thread>

namespace {

class Faults : public Program {
protected:
    void SetUp() override {
        Program::SetUp();
        for (int i = 0; i < 60; ++i)
            addNoise(qPrintable(QStringLiteral("deep/n%1.png").arg(i)), 20 + i % 17);
    }

    QStringList line() const {
        return {u("--format"), u("json"), u("--data"), u("a.json"), u("--sheet"), u("a.png"), u("sprites")};
    }

    /// Whole files that belong together, or none.
    bool hasWholePair() const {
        const QImage sheet(path("a.png"));
        const QJsonObject meta =
            QJsonDocument::fromJson(content("a.json")).object().value(u("meta")).toObject();
        const QJsonObject size = meta.value(u("size")).toObject();
        return !sheet.isNull() &&
               sheet.size() == QSize(size.value(u("w")).toInt(), size.value(u("h")).toInt());
    }

    void removeOutputs() {
        QFile::remove(path("a.json"));
        QFile::remove(path("a.png"));
    }
};

} // namespace

TEST_F(Faults, placesOfTheOutput) {
    ASSERT_TRUE(QDir(m_folder.path()).mkpath(u("folder.png")));
    Outcome outcome = run("--sheet folder.png --data a.plist sprites");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.err.contains(u("folder.png"))) << qPrintable(outcome.err);
    EXPECT_TRUE(QDir(path("folder.png")).exists());
    EXPECT_FALSE(QFile::exists(path("a.plist")));

    // A file system that can't be written; a mere mode would not stop root.
    outcome = run("--sheet /proc/a.png --data a.plist sprites");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.err.contains(u("/proc/a.png"))) << qPrintable(outcome.err);
    EXPECT_FALSE(QFile::exists(path("a.plist")));
}

TEST_F(Faults, outputFolderThatVanishes) {
    const QStringList arguments{u("--format"), u("json"),      u("--data"),          u("out/a.json"),
                                u("--sheet"),  u("out/a.png"), u("--force-publish"), u("sprites")};
    std::atomic<bool> ended{false};
    std::thread vandal([&] {
        while (!ended) {
            QDir(path("out")).removeRecursively();
            QThread::msleep(1);
        }
    });
    for (int i = 0; i < 8; ++i) {
        const Outcome outcome = run(arguments);
        EXPECT_TRUE(outcome.status == 0 || (outcome.status == 1 && outcome.err.contains(u("out/a."))))
            << outcome.status << qPrintable(outcome.err);
    }
    ended = true;
    vandal.join();
}

TEST_F(Faults, sourcesThatChangeWhileTheyAreRead) {
    const QByteArray whole = content("sprites/deep/n9.png");
    std::atomic<bool> ended{false};
    std::thread author([&] {
        for (int i = 0; !ended; ++i) {
            QFile file(path("sprites/deep/n9.png"));
            if (i % 3 == 0)
                file.remove();
            else if (file.open(QIODevice::WriteOnly))
                file.write(i % 3 == 1 ? whole.left(whole.size() / 2) : whole + whole);
        }
    });
    for (int i = 0; i < 8; ++i) {
        const Outcome outcome = run(line() + QStringList{u("--force-publish")});
        EXPECT_EQ(outcome.status, 0) << qPrintable(outcome.err);
        for (const QString& text : outcome.err.split(u("\n"), Qt::SkipEmptyParts))
            EXPECT_TRUE(text.contains(u("n9.png")) || text.startsWith(u("libpng "))) << qPrintable(text);
        EXPECT_TRUE(hasWholePair());
        EXPECT_GE(frames("a.json").size(), 61);
    }
    ended = true;
    author.join();
}

TEST_F(Faults, killedRunsLeaveNoHalfFile) {
    ASSERT_EQ(run(line()).status, 0);
    const QByteArray data = content("a.json"), sheet = content("a.png");
    for (int delay = 0; delay < 60; delay += 3) {
        removeOutputs();
        QProcess process;
        process.setWorkingDirectory(m_folder.path());
        process.start(program(), line());
        ASSERT_TRUE(process.waitForStarted());
        QThread::msleep(static_cast<unsigned>(delay));
        process.kill();
        process.waitForFinished();
        // A data file appears only after its texture is complete.
        const bool hasData = QFile::exists(path("a.json"));
        const bool hasSheet = QFile::exists(path("a.png"));
        EXPECT_TRUE(hasSheet || !hasData) << delay;
        EXPECT_EQ(content("a.json"), hasData ? data : QByteArray()) << delay;
        EXPECT_EQ(content("a.png"), hasSheet ? sheet : QByteArray()) << delay;
    }
    const Outcome outcome = run(line());
    EXPECT_EQ(outcome.status, 0) << qPrintable(outcome.err);
    EXPECT_EQ(content("a.json"), data);
    EXPECT_EQ(content("a.png"), sheet);
}

TEST_F(Faults, twoRunsAtOnce) {
    for (int i = 0; i < 6; ++i) {
        removeOutputs();
        Outcome first;
        std::thread other([&] { first = run(line() + QStringList{u("--force-publish")}); });
        const Outcome second = run(line() + QStringList{u("--force-publish")});
        other.join();
        EXPECT_EQ(first.status, 0) << qPrintable(first.err);
        EXPECT_EQ(second.status, 0) << qPrintable(second.err);
        EXPECT_TRUE(hasWholePair());
    }
}

TEST_F(Faults, equalInputGivesEqualBytes) {
    // The same files, made in another order, on one core, under another locale. Times are part of the token.
    const QDateTime time = QDateTime::currentDateTime().addSecs(-1000);
    const auto copyTo = [&](const QString& target, bool backwards) {
        QStringList names;
        QDirIterator files(path("sprites"), QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext())
            names.append(QDir(path("sprites")).relativeFilePath(files.next()));
        names.sort();
        if (backwards)
            std::reverse(names.begin(), names.end());
        for (const QString& name : qAsConst(names)) {
            const QString copy = target + QLatin1Char('/') + name;
            QDir().mkpath(QFileInfo(copy).path());
            ASSERT_TRUE(QFile::copy(path("sprites/") + name, copy));
            QFile file(copy);
            ASSERT_TRUE(file.open(QIODevice::ReadWrite));
            ASSERT_TRUE(file.setFileTime(time, QFileDevice::FileModificationTime));
        }
    };
    copyTo(path("one/sprites"), false);
    copyTo(path("two/sprites"), true);
    const auto publish = [&](const char* folder, const char* prefix) {
        const QString command =
            QStringLiteral("cd '%1' && exec %2 '%3' %4 --opt RGBA4444 --dither-fs-alpha --scale 0.7")
                .arg(path(folder), u(prefix), program(), line().join(QLatin1Char(' ')));
        const Outcome outcome = start(u("sh"), {u("-c"), command});
        EXPECT_EQ(outcome.status, 0) << qPrintable(outcome.err);
    };
    publish("one", "env LC_ALL=C");
    publish("two", "taskset -c 0 env LC_ALL=tr_TR.UTF-8 LANG=tr_TR.UTF-8");
    EXPECT_EQ(content("one/a.png"), content("two/a.png"));
    const auto withoutToken = [this](const char* file) {
        QString text = QString::fromUtf8(content(file));
        return text.remove(QRegularExpression(u("\\$Sorvane:SmartUpdate:[0-9a-f]+\\$")));
    };
    EXPECT_EQ(withoutToken("one/a.json"), withoutToken("two/a.json"));
    EXPECT_NE(withoutToken("one/a.json"), QString::fromUtf8(content("one/a.json")));
}

namespace {

/// Sprites of which the image cache holds not all: one more than a GiB takes, each a few KiB on disk.
class LargeSprites : public Program {
protected:
    static constexpr int side = 2000;

    void SetUp() override {
        ASSERT_TRUE(QDir(m_folder.path()).mkpath(u("sprites/deep")));
        ASSERT_TRUE(QDir(m_folder.path()).mkpath(u("temporary")));
        addSprite("first.png", QSize(side, side), 0xffff0000);
        addSprite("deep/0.png", QSize(side, side), 0xff0000ff);
    }

    void addCopies(int count) {
        for (int number = 1; number < count; ++number)
            ASSERT_TRUE(
                QFile::copy(path("sprites/deep/0.png"), path("sprites/deep/") + u("%1.png").arg(number)));
    }

    /// A run whose images go to that folder when memory has no place for them.
    Outcome run(const QString& temporaryFolder, const QString& options) const {
        const QString command =
            QStringLiteral("TMPDIR='%1' exec '%2' --format json --data a.json --sheet a.png "
                           "--trim-mode None --disable-rotation %3 sprites")
                .arg(temporaryFolder, program(), options);
        return start(u("sh"), {u("-c"), command});
    }

    /// Publishes where images can be swapped out.
    void publishAll(const QString& options, int count) const {
        const Outcome outcome = run(path("temporary"), options);
        EXPECT_EQ(outcome.status, 0) << qPrintable(outcome.err);
        EXPECT_EQ(frames("a.json").size(), count);
        EXPECT_TRUE(swapFiles(path("temporary")).isEmpty()) << "none is left for somebody else to remove";
    }

    QStringList swapFiles(const QString& folder) const {
        return QDir(folder).entryList({u("sorv.*")}, QDir::Files);
    }

    /// Whether the frame of that name is wholly of that colour.
    bool isFilled(const QString& name, QRgb color) const {
        const QJsonObject frames =
            QJsonDocument::fromJson(content("a.json")).object().value(u("frames")).toObject();
        const QJsonObject frame = frames.value(name).toObject().value(u("frame")).toObject();
        const QRect place(frame.value(u("x")).toInt(), frame.value(u("y")).toInt(),
                          frame.value(u("w")).toInt(), frame.value(u("h")).toInt());
        QImage filled(place.size(), QImage::Format_ARGB32);
        filled.fill(color);
        return !place.isEmpty() &&
               QImage(path("a.png")).copy(place).convertToFormat(QImage::Format_ARGB32) == filled;
    }
};

// A file system that can't be written; a mere mode would not stop root.
const char unwritable[] = "/proc";

} // namespace

TEST_F(LargeSprites, loadingWithoutATemporaryFolder) {
    addCopies(67);
    // The first sprite is swapped out when the last one comes, and prepared last.
    const QString options = u("--scale 0.03 --disable-auto-alias");
    publishAll(options, 68);
    EXPECT_TRUE(isFilled(u("first.png"), 0xffff0000));
    EXPECT_TRUE(isFilled(u("deep/66.png"), 0xff0000ff));

    QFile::remove(path("a.json"));
    QFile::remove(path("a.png"));
    for (const QString& folder : {u(unwritable), u("/no/such/folder")}) {
        const Outcome outcome = run(folder, options);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_TRUE(outcome.err.contains(u("error: Can't write file ") + folder + u("/sorv.")))
            << qPrintable(outcome.err);
        EXPECT_FALSE(QFile::exists(path("a.json")) || QFile::exists(path("a.png")));
    }
    EXPECT_TRUE(swapFiles(u("/")).isEmpty()) << "what isn't there must not become the root folder";
}

TEST_F(LargeSprites, preparingWithoutATemporaryFolder) {
    addCopies(35);
    const QString options = u("--max-size 4096");
    publishAll(options, 36);

    const Outcome outcome = run(u(unwritable), options + u(" --force-publish"));
    EXPECT_EQ(outcome.status, 0);
    // Each sprite is on the sheet or told of.
    QStringList told;
    const QRegularExpression warning(u("warning: (.*): Can't write file /proc/sorv\\."));
    for (auto match = warning.globalMatch(outcome.err); match.hasNext();)
        told.append(match.next().captured(1));
    EXPECT_FALSE(told.isEmpty()) << qPrintable(outcome.err);
    QStringList all = frames("a.json") + told;
    EXPECT_EQ(all.removeDuplicates(), 0);
    EXPECT_EQ(all.size(), 36);
    EXPECT_FALSE(QImage(path("a.png")).isNull());
}
