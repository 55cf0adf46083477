// The shipped templates in the real program.

#include "batch/Program.h"
#include "ExporterDescriptor.h"

TEST_F(Program, aSecondRunOfATemplateWritesNothing) {
    const QString templates = u(SORVANE_TEMPLATES);
    const QStringList formats = QDir(templates).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    EXPECT_EQ(formats.size(), 11);
    for (const QString& format : formats) {
        const DataExporterInfo info = readExporterDescriptor(templates + u("/") + format).info;
        EXPECT_EQ(info.id, format);
        const std::string data = "sheet." + info.fileExtension.toStdString();
        const QStringList arguments = QStringLiteral("--format %1 --data %2 --sheet sheet.png sprites")
                                          .arg(format, QString::fromStdString(data))
                                          .split(u(" "));
        const Outcome first = run(arguments);
        EXPECT_TRUE(first.out.contains(u("Writing data for ") + format)) << qPrintable(first.err);
        const QByteArray written = content(data.c_str());
        EXPECT_TRUE(written.contains("deep/blue")) << written.toStdString();
        EXPECT_EQ(run(arguments).out, u("Nothing to do - sprite sheet not changed\n")) << qPrintable(format);
        EXPECT_EQ(content(data.c_str()), written);
    }
}

TEST_F(Program, mapspriteOfBothDensities) {
    EXPECT_EQ(run("--format mapsprite --data sprite@2x.json --sheet sprite@2x.png --auto-sd sprites")
                  .err.toStdString(),
              "");
    for (const auto& [name, ratio] : {std::pair("sprite@2x", 2), {"sprite", 1}}) {
        const QImage sheet(path(name) + u(".png"));
        const QJsonObject icons = QJsonDocument::fromJson(content(qPrintable(u(name) + u(".json")))).object();
        EXPECT_EQ(icons.keys(), QStringList({u("deep/blue"), u("red")}));
        for (const auto& [icon, size, color] :
             {std::tuple("deep/blue", QSize(4, 15), 0xff0000ff), {"red", QSize(10, 5), 0xffff0000}}) {
            const QJsonObject fields = icons.value(u(icon)).toObject();
            const auto number = [&fields = fields](const char* field) {
                return fields.value(u(field)).toInt();
            };
            EXPECT_EQ(number("pixelRatio"), ratio);
            EXPECT_EQ(QSize(number("width"), number("height")), size * ratio) << icon;
            EXPECT_EQ(sheet.pixel(number("x"), number("y")), color) << icon << " of " << name;
        }
    }
}
