#include "ExporterFolders.h"
#include "GlobalSettings.h"
#include "TemplateFormat.h"

#include <QDateTime>

using testing::EndsWith;
using testing::StartsWith;

namespace {
class ExporterFolder : public TemplateFormat {};
} // namespace

TEST_F(ExporterFolder, readsItsDescriptor) {
    const DataExporterGeneric exporter(directory());
    EXPECT_EQ(exporter.id(), QStringLiteral("mine"));
    EXPECT_EQ(exporter.aliases(), QStringList({QStringLiteral("Mine-Of-Old"), QStringLiteral("older")}));
    EXPECT_EQ(exporter.displayName(), QStringLiteral("My format"));
    EXPECT_EQ(exporter.description(), QStringLiteral("For my engine"));
    EXPECT_EQ(exporter.version(), QStringLiteral("7.3"));
    EXPECT_EQ(exporter.fileExtension(), QStringLiteral("txt"));
    EXPECT_EQ(exporter.defaultFileName(), QStringLiteral("out.txt"));
    EXPECT_EQ(exporter.fileName(), QStringLiteral("out.txt"));
    EXPECT_EQ(exporter.fileFilter(), QStringLiteral("My file (*.txt)"));
    EXPECT_TRUE(exporter.isTemplateBased());
    EXPECT_TRUE(exporter.supportsRotation());
    EXPECT_EQ(exporter.rotationDirection(), 1);
    EXPECT_FALSE(exporter.supportsTrimming());
    EXPECT_FALSE(exporter.canTrim());
    EXPECT_FALSE(exporter.supportsNPOT());
    EXPECT_TRUE(exporter.showsTexturePath());
    EXPECT_FALSE(exporter.showsTrimNames());
}

TEST_F(ExporterFolder, takesTheFirstFileOfEachFiles) {
    const auto file = [](const QByteArray& name) {
        return "<file><fileExtension>e" + name + "</fileExtension><template>" + name + "</template><name>" +
               name + "</name><displayName>d" + name + "</displayName></file>";
    };
    QByteArray text = descriptor;
    text.replace("</files>",
                 file("ignored") + "</files><files>" + file("second") + file("ignored") + "</files>");
    add(QStringLiteral("mine/exporter.xml"), text);
    const DataExporterGeneric exporter(directory());
    ASSERT_EQ(exporter.files().size(), 2);
    EXPECT_EQ(exporter.files()[0].templateName, QStringLiteral("main.txt"));
    EXPECT_EQ(exporter.files()[1].name, QStringLiteral("second"));
    EXPECT_EQ(exporter.fileFilter(), QStringLiteral("dsecond (*.esecond)"));
    EXPECT_EQ(exporter.defaultFileName(), QStringLiteral("out.esecond"));
    // Both render into the one file of the job.
    add(QStringLiteral("mine/second"), "second {{ texture.fullName }}");
    EXPECT_EQ(rendered("first, and a good deal longer"), "second sheet.v2.png");
    // The first alone is not the format's file.
    QFile::remove(output());
    add(QStringLiteral("mine/second"), "{% nosuch %}");
    EXPECT_EQ(errorOf([&] { write(directory()); }).first, 19);
    EXPECT_FALSE(QFile::exists(output()));
}

TEST_F(ExporterFolder, saysWhatIsWrongInADescriptor) {
    const std::string file = (directory() + QStringLiteral("/exporter.xml")).toStdString();
    const struct {
        const char* from;
        const char* to;
        int code;
        std::string message;
    } cases[] = {
        {"<exporter version=\"1.0\">", "<exporter version=\"2.0\">", 40,
         "Can't read exporter " + file + " with version \"2.0\". Supported versions are: \"1.0\""},
        {"<exporter version=\"1.0\">", "<exporter>", 40,
         "Can't read exporter " + file + " with version \"\". Supported versions are: \"1.0\""},
        {"<name> mine </name>", "", 51, file + ":2: Missing value for name as subelement of exporter"},
        {"<version>7.3</version>", "", 51, file + ":2: Missing value for version as subelement of exporter"},
        {"<name>main</name>", "", 51, file + ":10: Missing value for name as subelement of file"},
        {"<template>main.txt</template>", "", 51,
         file + ":10: Missing value for template as subelement of file"},
        {"<supportsNPOT></supportsNPOT>", "<supportsNPOT>maybe</supportsNPOT>", 51,
         file + ":2: Illegal value for supportsNPOT: maybe, expected bool (yes,no,true,false,0,1)"},
        {"ccw", "left", 51,
         file + ":2: Illegal value left for <rotationDirection>. Possible values are: cw,ccw"},
        {"<version>7.3</version>", "<version>7.3</versoin>", 45, "Can't read " + file + ": (8,"},
        {"</exporter>\n", "", 45, "Can't read " + file + ": ("},
        {"<?xml version=\"1.0\"?>", "<!DOCTYPE a [<!ENTITY b \"c\">]>", 45, "Can't read " + file + ": ("},
    };
    for (const auto& fault : cases) {
        QByteArray text = descriptor;
        ASSERT_TRUE(text.contains(fault.from));
        add(QStringLiteral("mine/exporter.xml"), text.replace(fault.from, fault.to));
        const auto [code, message] = errorOf([&] { DataExporterGeneric exporter(directory()); });
        EXPECT_EQ(code, fault.code) << fault.to;
        if (code == 45) {
            EXPECT_THAT(message, StartsWith(fault.message));
            EXPECT_THAT(message, EndsWith(" "));
        } else {
            EXPECT_EQ(message, fault.message);
        }
    }
    // Neither the depth of a document nor its length goes unchecked.
    for (const QByteArray& text : {QByteArray("<a>").repeated(100000), QByteArray(5 << 20, ' ')}) {
        add(QStringLiteral("mine/exporter.xml"), text);
        EXPECT_EQ(errorOf([&] { DataExporterGeneric exporter(directory()); }).first, 45);
    }
}

TEST_F(ExporterFolder, scansUntilTheFirstFault) {
    QByteArray text = descriptor;
    add(QStringLiteral("also/exporter.xml"), QByteArray(text).replace("> mine <", ">json<"));
    DataExporterRegistry registry;
    const int builtIn = registry.exporters().size();
    registry.scan(QDir(folder.filePath(QStringLiteral("exporters"))));
    ASSERT_EQ(registry.exporters().size(), builtIn + 2);
    EXPECT_EQ(registry.find(QStringLiteral("mine")), registry.exporters().last());
    EXPECT_EQ(registry.find(QStringLiteral("MINE")), nullptr);
    EXPECT_EQ(registry.find(QStringLiteral("OLDER"))->displayName(), QStringLiteral("My format"));
    // The built-in one stands before it.
    EXPECT_FALSE(registry.find(QStringLiteral("json"))->isTemplateBased());

    ASSERT_TRUE(QDir().mkpath(directory("between")));
    DataExporterRegistry other;
    const auto [code, message] =
        errorOf([&] { other.scan(QDir(folder.filePath(QStringLiteral("exporters")))); });
    EXPECT_EQ(code, 45);
    EXPECT_EQ(message, "Can't read " + directory("between").toStdString() + "/exporter.xml");
    // "also" was read before, "mine" would come after.
    EXPECT_EQ(other.exporters().size(), builtIn + 1);
    EXPECT_EQ(other.find(QStringLiteral("mine")), nullptr);

    other.scan(QDir(folder.filePath(QStringLiteral("nosuch"))));
    EXPECT_EQ(other.exporters().size(), builtIn + 1);
}

TEST_F(ExporterFolder, startScansTheUsersFolderToo) {
    DataExporterRegistry registry;
    EXPECT_EQ(scanExporterFolders(registry), QStringList());
    EXPECT_EQ(registry.find(QStringLiteral("mine")), nullptr);
    GlobalSettings().setCustomExporterPath(folder.filePath(QStringLiteral("exporters")));
    EXPECT_EQ(scanExporterFolders(registry), QStringList());
    EXPECT_NE(registry.find(QStringLiteral("mine")), nullptr);
    QFile::remove(directory() + QStringLiteral("/exporter.xml"));
    EXPECT_EQ(scanExporterFolders(registry),
              QStringList(QStringLiteral("Can't read %1/exporter.xml").arg(directory())));
    GlobalSettings().setCustomExporterPath({});
}

TEST_F(ExporterFolder, fingerprintFollowsEveryFile) {
    add(QStringLiteral("mine/main.txt"), "abc");
    add(QStringLiteral("mine/sub/part.txt"), "abc");
    const DataExporterGeneric exporter(directory());
    const QFileInfo main(directory() + QStringLiteral("/main.txt"));
    const QString first = exporter.versionString();
    EXPECT_EQ(first, exporter.versionString());
    EXPECT_TRUE(first.startsWith(directory() + QStringLiteral("/exporter.xml|")));
    EXPECT_TRUE(first.contains(QStringLiteral("%1|3|%2").arg(
        main.absoluteFilePath(), main.lastModified().toString(QStringLiteral("dd.MM.yyyy hh:mm:ss.zzz")))));
    EXPECT_TRUE(first.contains(directory() + QStringLiteral("/sub/part.txt|3|")));

    QFile part(directory() + QStringLiteral("/sub/part.txt"));
    ASSERT_TRUE(part.open(QIODevice::ReadWrite));
    ASSERT_TRUE(
        part.setFileTime(QDateTime::currentDateTime().addMSecs(-1234567), QFileDevice::FileModificationTime));
    part.close();
    const QString touched = exporter.versionString();
    EXPECT_NE(touched, first);
    add(QStringLiteral("mine/sub/more.txt"), "");
    EXPECT_NE(exporter.versionString(), touched);
    // A link back up ends where it starts.
    ASSERT_TRUE(QFile::link(directory(), directory() + QStringLiteral("/sub/loop")));
    EXPECT_EQ(exporter.versionString().count(QStringLiteral("part.txt|")), 1);
    // Folders that all link to each other, which make millions of ways.
    const QString web = directory() + QStringLiteral("/web/%1");
    for (int i = 0; i < 12; ++i) {
        add(QStringLiteral("mine/web/%1/strand.txt").arg(i), "");
        for (int j = 0; j < 12; ++j)
            ASSERT_TRUE(QFile::link(web.arg(j), (web + QStringLiteral("/%2")).arg(i).arg(j)));
    }
    EXPECT_EQ(exporter.versionString().count(QStringLiteral("strand.txt|")), 12);
}
