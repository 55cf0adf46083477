#include "DataSheet.h"
#include "product.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QByteArray hash = QByteArray(R"json({"frames": {

"Turn.png":
{
	"frame": {"x":60,"y":3,"w":20,"h":10},
	"rotated": true,
	"trimmed": false,
	"spriteSourceSize": {"x":0,"y":0,"w":20,"h":10},
	"sourceSize": {"w":20,"h":10}
},
"Zwölf.png":
{
	"frame": {"x":2,"y":3,"w":32,"h":32},
	"rotated": false,
	"trimmed": true,
	"spriteSourceSize": {"x":0,"y":1,"w":32,"h":32},
	"sourceSize": {"w":40,"h":33}
},
"a\"b\\c.png":
{
	"frame": {"x":41,"y":4,"w":7,"h":7},
	"rotated": false,
	"trimmed": true,
	"spriteSourceSize": {"x":1,"y":2,"w":7,"h":7},
	"sourceSize": {"w":10,"h":10}
},
"b/hero.png":
{
	"frame": {"x":2,"y":3,"w":32,"h":32},
	"rotated": false,
	"trimmed": false,
	"spriteSourceSize": {"x":0,"y":0,"w":32,"h":32},
	"sourceSize": {"w":32,"h":32}
}},
"meta": {
	"app": "HOME",
	"version": "1.0",
	"image": "sheet.png",
	"format": "RGBA8888",
	"size": {"w":128,"h":64},
	"scale": "1",
	"smartupdate": "$token$"
}
}
)json")
                            .replace("HOME", product::homePage);

const QByteArray bhive = QByteArray(R"json({"frames": {

"Turn.png":
{
	"frame": {"x":60,"y":3,"w":10,"h":20},
	"rotated": true,
	"offset": {"x":0,"y":0},
	"sourceSize": {"w":20,"h":10}
},
"Zwölf.png":
{
	"frame": {"x":2,"y":3,"w":32,"h":32},
	"trimmed": true,
	"offset": {"x":0,"y":1},
	"sourceSize": {"w":40,"h":33}
},
"a"b\c.png":
{
	"frame": {"x":41,"y":4,"w":7,"h":7},
	"trimmed": true,
	"offset": {"x":1,"y":2},
	"sourceSize": {"w":10,"h":10}
},
"b/hero.png":
{
	"frame": {"x":2,"y":3,"w":32,"h":32},
	"offset": {"x":0,"y":0},
	"sourceSize": {"w":32,"h":32}
}},
"meta": {
	"app": "HOME",
	"version": "1.0",
	"image": "sheet.png",
	"format": "RGBA8888",
	"size": {"w":128,"h":64},
	"scale": "1"
}
}
)json")
                             .replace("HOME", product::homePage);

QJsonObject parsed(const QByteArray& text) {
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    return document.object();
}

} // namespace

TEST(DataExporterJSON, writesAnObjectByName) {
    EXPECT_EQ(writtenData("json").toStdString(), hash.toStdString());
    EXPECT_EQ(writtenData("unity").toStdString(), hash.toStdString());
    EXPECT_EQ(parsed(hash)[QStringLiteral("frames")].toObject().keys().size(), 4);
}

TEST(DataExporterJSON, writesAnArray) {
    QByteArray expected = hash;
    expected.replace("{\"frames\": {", "{\"frames\": [").replace("}},\n\"meta\"", "}],\n\"meta\"");
    for (const char* name : {"Turn.png", "Zw\xc3\xb6lf.png", "a\\\"b\\\\c.png", "b/hero.png"})
        expected.replace(QByteArray("\"") + name + "\":\n{\n",
                         QByteArray("{\n\t\"filename\": \"") + name + "\",\n");
    EXPECT_EQ(writtenData("json-array").toStdString(), expected.toStdString());
    const QJsonArray frames = parsed(expected)[QStringLiteral("frames")].toArray();
    ASSERT_EQ(frames.size(), 4);
    EXPECT_EQ(frames[2].toObject()[QStringLiteral("filename")].toString(), QStringLiteral("a\"b\\c.png"));
}

TEST(DataExporterBHive, writesFramesAsTheyLie) {
    EXPECT_EQ(writtenData("bhive").toStdString(), bhive.toStdString());
}

TEST(DataExporterJSON, writesASheetWithoutSprites) {
    Settings settings;
    settings.globalSpriteSettings()->setScale(0.5);
    settings.setTextureSubPath(QStringLiteral("a\"b"));
    settings.setTextureFileName(QStringLiteral("x.png"));
    settings.setOutputFormat(SettingsBase::OutputFormat::RGB565);
    PackedTexture texture;
    texture.setSize({1, 2});
    const QByteArray rest =
        QByteArray(",\n\"meta\": {\n\t\"app\": \"") + product::homePage +
        "\",\n\t\"version\": \"1.0\",\n\t\"image\": \"IMAGE\",\n\t\"format\": \"RGB565\",\n"
        "\t\"size\": {\"w\":1,\"h\":2},\n\t\"scale\": \"0.5\"";
    const QByteArray escaped = QByteArray(rest).replace("IMAGE", "a\\\"b/x.png");
    const QByteArray raw = QByteArray(rest).replace("IMAGE", "a\"b/x.png");
    EXPECT_EQ(writtenData("json", settings, texture, {}),
              "{\"frames\": {\n\n}" + escaped + ",\n\t\"smartupdate\": \"\"\n}\n}\n");
    EXPECT_EQ(writtenData("json-array", settings, texture, {}),
              "{\"frames\": [\n\n]" + escaped + ",\n\t\"smartupdate\": \"\"\n}\n}\n");
    EXPECT_EQ(writtenData("bhive", settings, texture), "{\"frames\": {\n\n}" + raw + "\n}\n}\n");
    settings.globalSpriteSettings()->setScale(1.0 / 3.0);
    EXPECT_TRUE(writtenData("json", settings, texture).contains("\"scale\": \"0.333333\""));
}

TEST(DataExporterJSON, namesSpritesAsTheProjectWants) {
    Settings settings;
    settings.setTrimSpriteNames(true);
    PackedTexture texture;
    texture.add(PackedSprite(QString::fromUtf8("tab\there\n.png"), 1));
    texture.add(PackedSprite(QString::fromUtf8("\b\f\r\x01.bmp"), 2));
    const QByteArray json = writtenData("json", settings, texture);
    EXPECT_TRUE(json.contains("\n\"tab\\there\\n\":\n"));
    EXPECT_TRUE(json.contains("\n\"\\b\\f\\r\x01\":\n"));
    const QByteArray text = writtenData("bhive", settings, texture);
    EXPECT_TRUE(text.contains("\n\"tab\there\n.png\":\n"));
}
