#include "SmartUpdate.h"

#include "Settings.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QString u(const char* text) { return QString::fromUtf8(text); }

void write(const QString& name, const QByteArray& content) {
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

TEST(SmartUpdate, tokenChangesWithEachInput) {
    Settings settings;
    const QString token = SmartUpdate::token(settings, "a|1|x|y\n", u("stamp"));
    EXPECT_TRUE(QRegExp(u("\\$Sorvane:SmartUpdate:[0-9a-f]{32}\\$")).exactMatch(token));
    EXPECT_EQ(SmartUpdate::token(settings, "a|1|x|y\n", u("stamp")), token);
    EXPECT_NE(SmartUpdate::token(settings, "a|2|x|y\n", u("stamp")), token);
    EXPECT_NE(SmartUpdate::token(settings, "a|1|x|y\n", u("other")), token);
    settings.setDpi(1);
    EXPECT_NE(SmartUpdate::token(settings, "a|1|x|y\n", u("stamp")), token);
}

TEST(SmartUpdate, bothFilesHaveToBeThere) {
    const QTemporaryDir folder;
    const QString data = folder.filePath(u("a.json")), texture = folder.filePath(u("a.png"));
    const QString token = u("$Sorvane:SmartUpdate:0123$");
    EXPECT_FALSE(SmartUpdate::isCurrent(data, texture, token));
    write(data, "anything " + token.toLatin1() + " anything");
    EXPECT_FALSE(SmartUpdate::isCurrent(data, texture, token));
    write(texture, "x");
    EXPECT_TRUE(SmartUpdate::isCurrent(data, texture, token));
    write(data, token.toLower().toLatin1());
    EXPECT_FALSE(SmartUpdate::isCurrent(data, texture, token)) << "case counts";
    EXPECT_FALSE(SmartUpdate::isCurrent(u("/dev/zero"), texture, token)) << "a device is no earlier publish";
}

TEST(SmartUpdate, notesGoByDataFile) {
    const QString token = u("$Sorvane:SmartUpdate:0123$");
    EXPECT_FALSE(SmartUpdate::remembers(u("/x/a.json"), token));
    SmartUpdate::remember(u("/x/a.json"), token);
    EXPECT_TRUE(SmartUpdate::remembers(u("/x/a.json"), token));
    EXPECT_FALSE(SmartUpdate::remembers(u("/x/a.json"), u("other")));
    EXPECT_FALSE(SmartUpdate::remembers(u("/x/b.json"), token));
    SmartUpdate::forget(u("/x/a.json"));
    EXPECT_FALSE(SmartUpdate::remembers(u("/x/a.json"), token));
}
