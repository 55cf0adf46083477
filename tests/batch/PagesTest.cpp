// What is made from tables for readers and shells.

#include "DataExporterRegistry.h"
#include "OptionPages.h"
#include "OptionTable.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QByteArray content(const QString& name) {
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

/// What bash proposes for the last word of a command line.
QStringList proposals(const QStringList& words) {
    QTemporaryDir folder;
    QFile script(folder.filePath(QStringLiteral("completion")));
    EXPECT_TRUE(script.open(QIODevice::WriteOnly));
    script.write(bashCompletion().toUtf8());
    script.close();
    QProcess bash;
    // Outside of a completion there are no options of one to set.
    const QString command =
        QStringLiteral("compopt() { :; }; source \"$0\"; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); "
                       "_sorvane; printf '%s\\n' \"${COMPREPLY[@]}\"");
    bash.start(QStringLiteral("bash"),
               QStringList{QStringLiteral("-euc"), command, script.fileName()} + words);
    EXPECT_TRUE(bash.waitForFinished());
    EXPECT_EQ(bash.readAllStandardError(), "");
    EXPECT_EQ(bash.exitCode(), 0);
    return QString::fromUtf8(bash.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

TEST(Pages, ofTheDocumentationAreThoseOfTheTables) {
    DataExporterRegistry& formats = DataExporterRegistry::instance();
    formats.scan(QDir(QStringLiteral(SORVANE_EXPORTERS)));
    const QString docs = QStringLiteral(SORVANE_DOCS);
    const char* const remedy = "run scripts/docs";
    EXPECT_EQ(optionsPage().toUtf8(), content(docs + QStringLiteral("/options.md"))) << remedy;
    EXPECT_EQ(content(QStringLiteral(SORVANE_SETTINGS_PAGE)), content(docs + QStringLiteral("/settings.md")))
        << remedy;
    // Every format has a page of its own, in the list of them.
    const QByteArray list = content(docs + QStringLiteral("/formats/README.md"));
    for (const DataExporter* format : formats.exporters()) {
        const QString page = format->id() + QStringLiteral(".md");
        EXPECT_TRUE(QFile::exists(docs + QStringLiteral("/formats/") + page)) << page.toStdString();
        EXPECT_TRUE(list.contains(page.toUtf8())) << page.toStdString();
    }
}

TEST(Pages, manualTellsEveryOptionInItsPlace) {
    const QString manual = manualPage();
    for (const Option& option : optionTable())
        EXPECT_TRUE(manual.contains(QString(option.name).replace(QLatin1Char('-'), QLatin1String("\\-"))))
            << option.name.toStdString();
    const int mask = manual.indexOf(QLatin1String("heuristic\\-mask"));
    const int late = manual.indexOf(QLatin1String("on sprites which use one unique color"));
    const int next = manual.indexOf(QLatin1String("png\\-opt\\-level"));
    EXPECT_LT(mask, late);
    EXPECT_LT(late, next);
    // No line begins with a request that the macros don't know.
    const QRegularExpression request(QStringLiteral("^[.'](?!(TH|SH|SS|TP|PP|B|I|br|nf|fi)\\b)"),
                                     QRegularExpression::MultilineOption);
    EXPECT_FALSE(request.match(manual).hasMatch()) << request.match(manual).capturedStart();
}

TEST(Pages, shellProposesOptionsWordsAndFiles) {
    const QString program = QStringLiteral("Sorvane");
    EXPECT_EQ(proposals({program, QStringLiteral("--trim-m")}), QStringList(QStringLiteral("--trim-mode")));
    EXPECT_EQ(proposals({program, QStringLiteral("--trim-mode"), QStringLiteral("Crop")}),
              QStringList({QStringLiteral("Crop"), QStringLiteral("CropKeepPos")}));
    EXPECT_TRUE(
        proposals({program, QStringLiteral("--format"), QString()}).contains(QStringLiteral("json-array")));
    EXPECT_EQ(proposals({program, QStringLiteral("--max-size"), QString()}), QStringList());
    QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("sprites of mine")));
    EXPECT_EQ(proposals({program, QStringLiteral("--quiet"), folder.filePath(QStringLiteral("spri"))}),
              QStringList(folder.filePath(QStringLiteral("sprites of mine"))));
}
