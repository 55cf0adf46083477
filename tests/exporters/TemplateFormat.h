#pragma once

#include "DataExporterGeneric.h"
#include "DataSheet.h"
#include "Error.h"

#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <string>
#include <utility>

/// Of a format whose one template is main.txt.
inline const char* const descriptor = R"xml(<?xml version="1.0"?>
<exporter version="1.0">
    <name> mine </name>
    <nameAlias>Mine-Of-Old</nameAlias>
    <nameAlias>older</nameAlias>
    <displayName>My format</displayName>
    <description>For my engine</description>
    <version>7.3</version>
    <files>
        <file>
            <fileExtension>txt</fileExtension>
            <template>main.txt</template>
            <name>main</name>
            <displayName>My file</displayName>
        </file>
    </files>
    <supportsRotation>Yes</supportsRotation>
    <rotationDirection>ccw</rotationDirection>
    <supportsTrimming>0</supportsTrimming>
    <supportsNPOT></supportsNPOT>
</exporter>
)xml";

inline void writeFile(const QString& name, const QByteArray& content) {
    ASSERT_TRUE(QDir().mkpath(QFileInfo(name).path()));
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(content), content.size());
}

/// What a call throws; code 0 if it throws nothing.
template <class Call>
std::pair<int, std::string> errorOf(Call call) {
    try {
        call();
    } catch (const Error& error) {
        return {error.code(), error.message().toStdString()};
    }
    return {0, {}};
}

/// A folder of folders, and a job for the one named "mine".
class TemplateFormat : public testing::Test {
protected:
    TemplateFormat() {
        settings.setTextureFileName(QStringLiteral("/some/where/sheet.v2.png"));
        add(QStringLiteral("mine/exporter.xml"), descriptor);
    }

    void add(const QString& name, const QByteArray& content) {
        writeFile(folder.filePath(QStringLiteral("exporters/") + name), content);
    }

    QString directory(const char* name = "mine") const {
        return folder.filePath(QStringLiteral("exporters/") + QLatin1String(name));
    }

    QString output() const { return folder.filePath(QStringLiteral("out.txt")); }

    void write(const QString& from) {
        DataExporterGeneric exporter(from);
        exporter.setFileName(output());
        exporter.setInput(&settings, texture);
        exporter.setSmartUpdateKey(QStringLiteral("$token$"));
        exporter.write();
    }

    std::string written() const {
        QFile file(output());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll().toStdString();
    }

    std::string rendered(const QByteArray& text) {
        add(QStringLiteral("mine/main.txt"), text);
        write(directory());
        return written();
    }

    /// The error of a template, which must leave neither a file of its own nor harm an earlier one.
    std::pair<int, std::string> errorOfTemplate(const QByteArray& text) {
        add(QStringLiteral("mine/main.txt"), text);
        writeFile(output(), "earlier");
        const auto error = errorOf([&] { write(directory()); });
        EXPECT_EQ(written(), "earlier");
        EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList(QStringLiteral("out.txt")));
        return error;
    }

    QTemporaryDir folder;
    Settings settings;
    PackedTexture texture = dataSheet();
};
