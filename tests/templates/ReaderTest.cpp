// Each shipped template, by what the target's own reader makes of it: engines' parsers, interpreters and
// compilers. Where there is none without the whole engine, a strict reader after its documentation stands in.

#include "ShippedTemplates.h"

INSTANTIATE_TEST_SUITE_P(Names, NamedTemplate, testing::Bool());

TEST_P(NamedTemplate, phaser) {
    const QJsonObject read = understood("phaser.js", rendered("phaser"));
    const QJsonObject sprites = eachSprite([](const PackedSprite& sprite) {
        return QJsonObject{{"area", list(sprite.frameRect())},
                           {"rotated", sprite.rotated()},
                           {"trimmed", sprite.trimmed()},
                           {"kept", list(sprite.sourceRect())},
                           {"size", list(sprite.sourceRect().size())},
                           {"source", list(sprite.untrimmedSize())}};
    });
    EXPECT_EQ(textOf(read), textOf({{"image", image}, {"size", list(texture.size())}, {"sprites", sprites}}));
}

TEST_P(NamedTemplate, pixijs) {
    const QByteArray text = rendered("pixijs");
    const QJsonObject read = understood("pixijs.js", text);
    const QJsonObject sprites = eachSprite([](const PackedSprite& sprite) {
        return QJsonObject{
            {"frame", list(sprite.frameRect())},
            {"rotate", sprite.rotated() ? 2 : 0},
            {"trim", sprite.trimmed() ? QJsonValue(list(sprite.sourceRect())) : QJsonValue::Null},
            {"source", list(sprite.untrimmedSize())}};
    });
    const QJsonObject animations{{"b/run", runNames()}};
    EXPECT_EQ(textOf(read), textOf({{"image", image},
                                    {"size", list(texture.size())},
                                    {"sprites", sprites},
                                    {"animations", animations}}));

    // Beside the animations it is the built-in format.
    QJsonObject rest = QJsonDocument::fromJson(text).object();
    rest.remove(u("animations"));
    const QByteArray builtIn = writtenData("json", settings, texture, token);
    EXPECT_EQ(textOf(rest), textOf(QJsonDocument::fromJson(builtIn).object()));
}

TEST_F(ShippedTemplate, spine) {
    settings.setPremultiplyAlpha(true);
    settings.libGdx()->filtering()->setX(LibGDXFiltering::Filtering::Nearest);
    const QJsonObject read = understood("spine.js", rendered("spine"));
    settings.setTrimSpriteNames(true);
    QJsonObject sprites = eachSprite([](const PackedSprite& sprite) {
        const QRect source = sprite.sourceRect();
        const QSize whole = sprite.untrimmedSize();
        const QString number = sprite.trimmedName().section(u("run_"), 1);
        return QJsonObject{{"area", list(sprite.frameRect())},
                           {"degrees", sprite.rotated() ? 90 : 0},
                           {"index", number.toInt()},
                           {"size", list(source.size())},
                           {"offset", QJsonArray{source.x(), whole.height() - source.y() - source.height()}},
                           {"source", list(whole)}};
    });
    // The format has no quotes: what would end a name is replaced.
    sprites.insert(u("]]--/*_</key>"), sprites.take(u("]]--/*\n</key>")));
    sprites.insert(u("ui/a_b 'c'&<d>_"), sprites.take(u("ui/a:b 'c'&<d>\t")));
    const QJsonObject page{
        {"name", image}, {"size", list(texture.size())}, {"filter", QJsonArray{9728, 9729}}, {"pma", true}};
    EXPECT_EQ(textOf(read), textOf({{"pages", QJsonArray{page}}, {"sprites", sprites}}));
}

TEST_P(NamedTemplate, coronaImagesheet) {
    const QJsonObject read = understood("lua_values.lua", rendered("corona-imagesheet"));
    EXPECT_EQ(read.value("image").toString(), image);
    const QJsonObject sheet = read.value("sheet").toObject();
    EXPECT_EQ(sheet.value("sheetContentWidth").toInt(), 128);
    EXPECT_EQ(sheet.value("sheetContentHeight").toInt(), 64);
    const QJsonArray frames = sheet.value("frames").toArray();
    const QJsonObject indices = read.value("frameIndex").toObject();
    EXPECT_EQ(frames.size(), texture.allSprites().size());
    EXPECT_EQ(indices.size(), frames.size());
    const QJsonObject sprites = eachSprite([](const PackedSprite& sprite) {
        const QRect frame = sprite.frameRect();
        QJsonObject fields{
            {"x", frame.x()}, {"y", frame.y()}, {"width", frame.width()}, {"height", frame.height()}};
        if (sprite.trimmed()) {
            fields.insert("sourceX", sprite.sourceRect().x());
            fields.insert("sourceY", sprite.sourceRect().y());
            fields.insert("sourceWidth", sprite.untrimmedSize().width());
            fields.insert("sourceHeight", sprite.untrimmedSize().height());
        }
        return fields;
    });
    for (const QString& name : sprites.keys())
        EXPECT_EQ(textOf(frames.at(indices.value(name).toInt() - 1).toObject()),
                  textOf(sprites.value(name).toObject()))
            << name.toStdString();
}

TEST_P(NamedTemplate, love) {
    const QJsonObject read = understood("lua_values.lua", rendered("love"));
    const QJsonObject frames = eachSprite([&](const PackedSprite& sprite) {
        QJsonArray quad = list(sprite.frameRect());
        quad.append(128);
        quad.append(64);
        return QJsonObject{{"quad", quad},
                           {"width", sprite.sourceRect().width()},
                           {"height", sprite.sourceRect().height()},
                           {"offsetX", sprite.sourceRect().x()},
                           {"offsetY", sprite.sourceRect().y()},
                           {"sourceWidth", sprite.untrimmedSize().width()},
                           {"sourceHeight", sprite.untrimmedSize().height()}};
    });
    EXPECT_EQ(textOf(read), textOf({{"image", image},
                                    {"width", 128},
                                    {"height", 64},
                                    {"frames", frames},
                                    {"animations", QJsonObject{{"b/run", runNames()}}}}));
}

TEST_P(NamedTemplate, cocosCreator) {
    settings.setPremultiplyAlpha(GetParam());
    const QJsonObject read = understood("plist.py", rendered("cocos-creator"));
    const auto pair = [](double a, double b) { return QStringLiteral("{%1,%2}").arg(a).arg(b); };
    const QJsonObject frames = eachSprite([&](const PackedSprite& sprite) {
        const QRect source = sprite.sourceRect();
        const QSize whole = sprite.untrimmedSize();
        const QRect frame = sprite.frameRectWithoutRotation();
        const QString size = pair(source.width(), source.height());
        QJsonArray aliases;
        for (const PackedSprite& alias : sprite.aliasList())
            aliases.append(nameOf(alias));
        return QJsonObject{{"aliases", aliases},
                           {"spriteOffset", pair(source.x() + source.width() / 2.0 - whole.width() / 2.0,
                                                 whole.height() / 2.0 - source.y() - source.height() / 2.0)},
                           {"spriteSize", size},
                           {"spriteSourceSize", pair(whole.width(), whole.height())},
                           {"textureRect", QStringLiteral("{%1,%2}").arg(pair(frame.x(), frame.y()), size)},
                           {"textureRotated", sprite.rotated()}};
    });
    const QJsonObject metadata{{"format", 3},
                               {"pixelFormat", "RGBA8888"},
                               {"premultiplyAlpha", GetParam()},
                               {"realTextureFileName", image},
                               {"size", "{128,64}"},
                               {"smartupdate", token},
                               {"textureFileName", image}};
    EXPECT_EQ(textOf(read), textOf({{"frames", frames}, {"metadata", metadata}}));
}

TEST_F(ShippedTemplate, godot4) {
    const QJsonObject read = understood("godot.py", rendered("godot4"));
    EXPECT_EQ(read.value("metadata/smartupdate"), token);
    QMap<QString, PackedSprite> sprites;
    for (const PackedSprite& sprite : texture.allSprites())
        sprites.insert(sprite.trimmedName(), sprite);
    QJsonArray animations;
    const auto add = [&](const QString& name, const QStringList& frameNames) {
        QJsonArray frames;
        for (const QString& frameName : frameNames) {
            const PackedSprite sprite = sprites.take(frameName);
            QJsonObject resource{{"type", "AtlasTexture"},
                                 {"atlas", QJsonObject{{"type", "Texture2D"}, {"path", image}}},
                                 {"region", list(sprite.frameRect())}};
            const QSize margin = sprite.untrimmedSize() - sprite.sourceRect().size();
            if (sprite.trimmed())
                resource.insert("margin", list(QRect(sprite.cornerOffset(), margin)));
            frames.append(QJsonObject{{"duration", 1}, {"texture", resource}});
        }
        animations.append(QJsonObject{{"name", name}, {"frames", frames}, {"loop", true}, {"speed", 5}});
    };
    const QStringList order{u("#{$x}@{x}{{y}}{%z%}"), u("Turn"),    u("Zw\xc3\xb6lf"),
                            u("]]--/*\n</key>"),      u("a\"b\\c"), u("b/hero")};
    for (const QString& name : order)
        add(name, {name});
    add(u("b/run"), {u("b/run_1"), u("b/run_2"), u("b/run_10")});
    add(u("ui/a:b 'c'&<d>\t"), {u("ui/a:b 'c'&<d>\t")});
    EXPECT_TRUE(sprites.isEmpty());
    EXPECT_EQ(textOf({{"animations", read.value("animations")}}), textOf({{"animations", animations}}));
}

// As styles have it: an object with one entry an icon; what isn't known inside one is
// ignored.
TEST_F(ShippedTemplate, mapsprite) {
    for (const auto& [name, ratio] : {std::pair("sprite@2x.png", 2.0), {"sprite.png", 1.0}}) {
        settings.setTextureFileName(u(name));
        const QByteArray text = rendered("mapsprite");
        settings.setTrimSpriteNames(true);
        QJsonObject icons = eachSprite([&, density = ratio](const PackedSprite& sprite) {
            const QRect frame = sprite.frameRect();
            return QJsonObject{{"x", frame.x()},
                               {"y", frame.y()},
                               {"width", frame.width()},
                               {"height", frame.height()},
                               {"pixelRatio", density}};
        });
        QJsonObject first = icons.value(u("#{$x}@{x}{{y}}{%z%}")).toObject();
        first.insert("smartupdate", token);
        icons.insert(u("#{$x}@{x}{{y}}{%z%}"), first);
        EXPECT_EQ(textOf(QJsonDocument::fromJson(text).object()), textOf(icons));
    }
}

TEST_F(ShippedTemplate, scssAndLess) {
    for (const auto& [format, language] : {std::pair("scss", "sass"), {"less", "less"}}) {
        rendered(format);
        QJsonArray names;
        QByteArray expected;
        for (const PackedSprite& sprite : texture.allSprites()) {
            const QRect frame = sprite.frameRect();
            const auto half = [](int pixels) { return QByteArray::number(pixels / 2.0) + "px"; };
            expected += ".s" + QByteArray::number(names.size()) + " {\n  width: " + half(frame.width()) +
                        ";\n  height: " + half(frame.height()) +
                        ";\n  background-image: url(\"img/\\\"x\\\"&y/it's a sheet@2x.png\");\n"
                        "  background-repeat: no-repeat;\n  background-position: " +
                        half(-frame.x()) + ' ' + half(-frame.y()) + ";\n  background-size: 64px 32px;\n}\n";
            names.append(sprite.trimmedName());
        }
        const QByteArray css = read("styles.js", QJsonDocument(names).toJson(), {u(language), folder.path()});
        EXPECT_EQ(css.toStdString(), expected.toStdString()) << format;
    }
}
