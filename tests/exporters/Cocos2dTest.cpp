#include "DataSheet.h"
#include "OutsideReader.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

/// The property list as Python's reader understands it.
QJsonObject judged(const QByteArray& plist) {
    const QString script = QStringLiteral(
        "import sys,json,plistlib; json.dump(plistlib.loads(sys.stdin.buffer.read()),sys.stdout)");
    return QJsonDocument::fromJson(readOutside("python3", {QStringLiteral("-c"), script}, plist)).object();
}

QJsonObject object(const char* text) {
    QJsonParseError error{};
    const QJsonObject parsed = QJsonDocument::fromJson(text, &error).object();
    EXPECT_EQ(error.error, QJsonParseError::NoError) << text;
    return parsed;
}

void expectSame(const QJsonObject& actual, const QJsonObject& expected) {
    EXPECT_EQ(QJsonDocument(actual).toJson().toStdString(), QJsonDocument(expected).toJson().toStdString());
}

} // namespace

TEST(DataExporterCocos2d, writesTheBytesOfTheFormat) {
    Settings settings;
    settings.setTextureFileName(QStringLiteral("/x/s.png"));
    settings.setTextureSubPath(QStringLiteral("img"));
    PackedTexture texture;
    texture.setSize({8, 4});
    PackedSprite sprite(QStringLiteral("a<b.png"), 1);
    sprite.setPosition({1, 0});
    sprite.setSize({3, 4});
    sprite.setUntrimmedSize({3, 4});
    texture.add(sprite);
    const char* const expected = R"xml(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple Computer//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
    <dict>
        <key>frames</key>
        <dict>
            <key>a&lt;b.png</key>
            <dict>
                <key>frame</key>
                <string>{{1,0},{3,4}}</string>
                <key>offset</key>
                <string>{0,0}</string>
                <key>rotated</key>
                <false/>
                <key>sourceColorRect</key>
                <string>{{0,0},{3,4}}</string>
                <key>sourceSize</key>
                <string>{3,4}</string>
            </dict>
        </dict>
        <key>metadata</key>
        <dict>
            <key>format</key>
            <integer>2</integer>
            <key>realTextureFileName</key>
            <string>img/s.png</string>
            <key>size</key>
            <string>{8,4}</string>
            <key>textureFileName</key>
            <string>img/s.png</string>
        </dict>
    </dict>
</plist>
)xml";
    EXPECT_EQ(writtenData("cocos2d", settings, texture, {}).toStdString(), expected);
}

TEST(DataExporterCocos2d, writesRotatingSprites) {
    expectSame(judged(writtenData("cocos2d")), object(R"json({
        "frames": {
            "Turn.png": {"frame": "{{60,3},{20,10}}", "offset": "{0,0}", "rotated": true,
                         "sourceColorRect": "{{0,0},{20,10}}", "sourceSize": "{20,10}"},
            "Zwölf.png": {"frame": "{{2,3},{32,32}}", "offset": "{-4,-0.5}", "rotated": false,
                          "sourceColorRect": "{{0,1},{32,32}}", "sourceSize": "{40,33}"},
            "a\"b\\c.png": {"frame": "{{41,4},{7,7}}", "offset": "{-0.5,-0.5}", "rotated": false,
                            "sourceColorRect": "{{1,2},{7,7}}", "sourceSize": "{10,10}"},
            "b/hero.png": {"frame": "{{2,3},{32,32}}", "offset": "{0,0}", "rotated": false,
                           "sourceColorRect": "{{0,0},{32,32}}", "sourceSize": "{32,32}"}},
        "metadata": {"format": 2, "realTextureFileName": "sheet.png", "size": "{128,64}",
                     "smartupdate": "$token$", "textureFileName": "sheet.png"}})json"));
}

TEST(DataExporterCocos2d, writesTheOlderFormats) {
    expectSame(judged(writtenData("cocos2d-0.99.4")), object(R"json({
        "frames": {
            "Turn.png": {"frame": "{{60,3},{20,10}}", "offset": "{0,0}", "sourceSize": "{20,10}"},
            "Zwölf.png": {"frame": "{{2,3},{32,32}}", "offset": "{-4,-0.5}", "sourceSize": "{40,33}"},
            "a\"b\\c.png": {"frame": "{{41,4},{7,7}}", "offset": "{-0.5,-0.5}", "sourceSize": "{10,10}"},
            "b/hero.png": {"frame": "{{2,3},{32,32}}", "offset": "{0,0}", "sourceSize": "{32,32}"}},
        "metadata": {"format": 1, "realTextureFileName": "sheet.png", "size": "{128,64}",
                     "smartupdate": "$token$", "textureFileName": "sheet.png"}})json"));
    expectSame(judged(writtenData("cocos2d-original")), object(R"json({
        "frames": {
            "Turn.png": {"x": 60, "y": 3, "width": 20, "height": 10, "offsetX": 0, "offsetY": 0,
                         "originalWidth": 20, "originalHeight": 10},
            "Zwölf.png": {"x": 2, "y": 3, "width": 32, "height": 32, "offsetX": -4, "offsetY": -0.5,
                          "originalWidth": 40, "originalHeight": 33},
            "a\"b\\c.png": {"x": 41, "y": 4, "width": 7, "height": 7, "offsetX": -0.5, "offsetY": -0.5,
                            "originalWidth": 10, "originalHeight": 10},
            "b/hero.png": {"x": 2, "y": 3, "width": 32, "height": 32, "offsetX": 0, "offsetY": 0,
                           "originalWidth": 32, "originalHeight": 32}},
        "metadata": {"format": 0, "realTextureFileName": "sheet.png", "size": "{128,64}",
                     "smartupdate": "$token$", "textureFileName": "sheet.png"},
        "texture": {"width": 128, "height": 64}})json"));
    // A real stays one, whole or not.
    EXPECT_TRUE(
        writtenData("cocos2d-original").contains("<key>offsetY</key>\n                <real>0</real>"));
}

TEST(DataExporterCocos2d, keepsTheLaterOfEqualNames) {
    Settings settings;
    settings.setTrimSpriteNames(true);
    PackedTexture texture;
    texture.setSize({8, 8});
    for (const char* name : {"a.png", "a.bmp"}) {
        PackedSprite sprite(QLatin1String(name), texture.sprites().size());
        sprite.setPosition({texture.sprites().size(), 0});
        sprite.setSize({1, 1});
        texture.add(sprite);
    }
    const QJsonObject frames =
        judged(writtenData("cocos2d", settings, texture))[QStringLiteral("frames")].toObject();
    ASSERT_EQ(frames.keys(), QStringList(QStringLiteral("a")));
    EXPECT_EQ(frames[QStringLiteral("a")].toObject()[QStringLiteral("frame")].toString(),
              QStringLiteral("{{0,0},{1,1}}"));
}
