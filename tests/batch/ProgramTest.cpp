#include "Program.h"
#include "Settings.h"

TEST_F(Program, packsAFolderAndThenHasNothingToDo) {
    const char* line = "--format json --data out.json --sheet out.png sprites";
    Outcome first = run(line);
    EXPECT_EQ(first.status, 0) << qPrintable(first.err);
    EXPECT_EQ(first.err, QString());
    EXPECT_EQ(first.out, u("Resulting sprite sheet is 16x64.\nWriting sprite sheet to out.png\n"
                           "Writing data for json to out.json\n"));
    EXPECT_EQ(frames("out.json"), (QStringList{u("deep/blue.png"), u("red.png")}));
    EXPECT_EQ(QImage(path("out.png")).size(), QSize(16, 64));
    const QByteArray data = content("out.json"), sheet = content("out.png");

    const Outcome second = run(line);
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.out, u("Nothing to do - sprite sheet not changed\n"));
    EXPECT_EQ(run(u(line).split(u(" ")) + QStringList{u("--force-publish")}).out, first.out);
    EXPECT_EQ(content("out.json"), data);
    EXPECT_EQ(content("out.png"), sheet);
    EXPECT_EQ(run(u(line).split(u(" ")) + QStringList{u("--quiet"), u("--force-publish")}).out, QString());
    EXPECT_TRUE(run(u(line).split(u(" ")) + QStringList{u("--verbose"), u("--force-publish")})
                    .out.contains(u("Calculating layout\n")));
}

TEST_F(Program, tellsAboutItself) {
    const Outcome version = run("--version");
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, u("Sorvane 3.0.8\n"));
    const Outcome help = run("--help nonsense.png");
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.startsWith(u("Sorvane - 3.0.8\n")));
    const Outcome nothing = run(QStringList());
    EXPECT_EQ(nothing.status, 1);
    EXPECT_TRUE(nothing.out.startsWith(u("Sorvane - 3.0.8\n")));
    EXPECT_EQ(nothing.err, u("Sorvane:: error: No files specified for processing.\n"));
    const Outcome typo = run("--trim-mod Crop sprites");
    EXPECT_EQ(typo.status, 1);
    EXPECT_TRUE(typo.err.startsWith(u("Sorvane:: error: Unknown argument --trim-mod - please check")));
    EXPECT_TRUE(typo.err.endsWith(u("\nSorvane:: error: did you mean --trim-mode?\n")));
}

TEST_F(Program, badSourcesAreNamedAndTheOthersPacked) {
    addFile("sprites/broken.png", "\x89PNG\r\n\x1a\nnonsense");
    // A header that claims 60,000 x 60,000 pixels.
    addFile("sprites/huge.png",
            QByteArray::fromHex("89504e470d0a1a0a0000000d494844520000ea600000ea6008060000005f0b4a45"));
    const Outcome outcome = run("--format json --data out.json --sheet out.png sprites none.png");
    EXPECT_EQ(outcome.status, 0);
    // libpng adds a word of its own.
    const QStringList lines = outcome.err.split(QLatin1Char('\n')).filter(u("Sorvane::"));
    ASSERT_EQ(lines.size(), 3) << qPrintable(outcome.err);
    for (const char* name : {"broken.png", "huge.png", "none.png"})
        EXPECT_EQ(
            lines.filter(QStringLiteral("Sorvane:: warning: %1: Failed to load image: ").arg(u(name))).size(),
            1);
    EXPECT_EQ(frames("out.json"), (QStringList{u("deep/blue.png"), u("red.png")}));
}

TEST_F(Program, picturesThatNeedFontsNeedNoDisplay) {
    addFile("sprites/text.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='20'>"
                                "<text x='2' y='15'>Hi</text></svg>");
    const Outcome outcome = run("--format json --data out.json --sheet out.png sprites");
    EXPECT_EQ(outcome.status, 0) << qPrintable(outcome.err);
    EXPECT_TRUE(frames("out.json").contains(u("text.svg")));
}

TEST_F(Program, refusals) {
    const std::pair<const char*, const char*> cases[] = {
        {"--format flat sprites", "Unknown format: flat"},
        {"--width 33 --sheet a.png --data a.json sprites",
         "Fixed size width is in conflict with size constraint POT."},
        {"--opt PVRTC4 --sheet a.png --data a.json sprites",
         "PVRTC compression can only be used with PVR file format"},
        {"--sheet a.ppm sprites", "Can't derive ppm internal format."},
        {"movie.swf", "When using Flash importer from command line you must specify --enable-swf-import"},
        {"--replace nonsense sprites", "Format for replacement: <regexp>=<string>"},
        {"none.svs", "Can't open file none.svs for reading: "}};
    for (const auto& [line, message] : cases) {
        const Outcome outcome = run(line);
        EXPECT_EQ(outcome.status, 1) << line;
        EXPECT_TRUE(outcome.err.startsWith(u("Sorvane:: error: ") + u(message))) << line << '\n'
                                                                                 << qPrintable(outcome.err);
        EXPECT_TRUE(QDir(m_folder.path()).entryList({u("a.*")}).isEmpty()) << line;
    }
}

TEST_F(Program, placesThatCanNotBeWritten) {
    addFile("plain", "a file where a folder should be");
    Outcome outcome = run("--sheet plain/a.png --data a.plist sprites");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.err.startsWith(u("Sorvane:: error: Failed to write texture to file plain/a.png: ")))
        << qPrintable(outcome.err);
    EXPECT_FALSE(QFile::exists(path("a.plist")));
    outcome = run("--sheet a.png --data plain/a.plist sprites");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, u("Sorvane:: error: Failed to write plist file plain/a.plist\n"));
    EXPECT_EQ(content("plain"), QByteArray("a file where a folder should be"));
}

TEST_F(Program, aFullDiskLeavesNoHalfFile) {
    addNoise("noise.png", 60);
    // A limit on a file's size fails a write in the middle, as a full disk does.
    const QString limited =
        QStringLiteral("trap '' XFSZ; ulimit -f 4; exec '%1' --format json --data a.json --sheet a.png "
                       "sprites")
            .arg(program());
    Outcome outcome = start(u("sh"), {u("-c"), limited});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.err.startsWith(u("Sorvane:: error: Failed to write texture to file a.png: ")))
        << qPrintable(outcome.err);
    EXPECT_EQ(QDir(m_folder.path()).entryList({u("a.*")}, QDir::Files), QStringList());

    // Many names and few pixels: here the data file is what doesn't fit.
    ASSERT_TRUE(QFile::remove(path("sprites/noise.png")));
    for (int i = 0; i < 60; ++i)
        addSprite(qPrintable(QStringLiteral("a-rather-long-name-for-a-small-sprite-%1.png").arg(i)),
                  QSize(3, 3), 0xff00ff00);
    outcome = start(u("sh"), {u("-c"), limited});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, u("Sorvane:: error: Failed to write json file a.json\n"));
    EXPECT_FALSE(QFile::exists(path("a.json")));
}

TEST_F(Program, bytesAreTheSameOnOneCoreAndOnMany) {
    for (int i = 0; i < 40; ++i)
        addNoise(qPrintable(QStringLiteral("deep/n%1.png").arg(i)), 5 + i % 7);
    const QString line =
        u("--format json --data a.json --sheet a.png --dither-fs-alpha --opt RGBA4444 --scale 0.7 "
          "--force-publish sprites");
    ASSERT_EQ(run(line.split(u(" "))).status, 0);
    const QByteArray data = content("a.json"), sheet = content("a.png");
    ASSERT_EQ(start(u("taskset"), QStringList{u("-c"), u("0"), program()} + line.split(u(" "))).status, 0);
    EXPECT_EQ(content("a.json"), data);
    EXPECT_EQ(content("a.png"), sheet);
}

TEST_F(Program, projectsGoOnAfterAFaultyOne) {
    Settings good;
    good.setDataFormat(u("json"));
    good.setTextureFileName(path("good.png"));
    good.setDataFileName(path("good.json"));
    good.addFile(path("sprites"));
    good.save(path("GOOD.SVS"));
    Settings nameless;
    nameless.addFile(path("sprites"));
    nameless.save(path("nameless.svs"));
    addFile("broken.svs", "<?xml version=\"1.0\"?><data>");
    addSprite("../extra.png", QSize(4, 4), 0xff00ffff);

    const Outcome outcome = run("broken.svs --shape-padding 7 nameless.svs extra.png GOOD.SVS");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(outcome.out.startsWith(
        u("Processing broken.svs...\nProcessing nameless.svs...\nProcessing GOOD.SVS...\n")))
        << qPrintable(outcome.out);
    EXPECT_TRUE(
        outcome.err.contains(u("Sorvane:: error: Filenames for texture and data file must be set inside svs "
                               "file for batch processing.\nSorvane:: error: in the project file "
                               "nameless.svs\n")));
    EXPECT_TRUE(outcome.err.contains(u("Sorvane:: error: in the project file broken.svs\n")));
    EXPECT_EQ(frames("good.json"), (QStringList{u("deep/blue.png"), u("extra.png"), u("red.png")}));
}

TEST_F(Program, projectsWithOtherRulesOverTheSameFiles) {
    Settings first;
    first.setDataFormat(u("json"));
    first.addFile(path("sprites"));
    first.setTextureFileName(path("a.png"));
    first.setDataFileName(path("a.json"));
    first.addIgnoreFileList(u("*/red.png"));
    first.save(path("a.svs"));
    first.clearIgnoreFileList();
    first.addReplaceList(u("red=green"));
    first.setTextureFileName(path("b.png"));
    first.setDataFileName(path("b.json"));
    first.save(path("b.svs"));
    EXPECT_EQ(run("a.svs b.svs").status, 0);
    EXPECT_EQ(frames("a.json"), QStringList{u("deep/blue.png")});
    EXPECT_EQ(frames("b.json"), (QStringList{u("deep/blue.png"), u("green.png")}));
}

TEST_F(Program, theSheetAmongItsOwnSources) {
    EXPECT_TRUE(run("sprites/red.png --sheet sprites/red.png --data a.plist").err.contains(u("--sheet")));
    EXPECT_TRUE(run("sprites --sheet sprites/a.png --data a.plist").err.contains(u("--ignore-files")));
    EXPECT_EQ(run("--quiet --plist a.plist sprites").err, QString());
}
