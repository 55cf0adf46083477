#include "TemplateFormat.h"

#include <QDateTime>
#include <QMetaProperty>

using testing::HasSubstr;
using testing::StartsWith;

TEST_F(TemplateFormat, rendersEveryPropertyOfASheet) {
    const QString source = folder.filePath(QStringLiteral("source.png"));
    writeFile(source, "12345");
    const QFileInfo info(source);
    for (PackedSprite sprite : texture.allSprites())
        sprite.setFileData(FileData(source));
    const struct {
        const char* expression;
        std::string value;
    } cases[] = {
        {"smartUpdateKey", "$token$"},
        {"texture.size.width", "128"},
        {"texture.size.height", "64"},
        {"texture.absoluteFileName", "/some/where/sheet.v2.png"},
        {"texture.trimmedName", "sheet.v2"},
        {"texture.fullName", "sheet.v2.png"},
        {"sprites|length", "3"},
        {"sprites.0.fullName", "b/hero.png"},
        {"sprites.0.trimmedName", "b/hero"},
        {"sprites.0.aliasList|length", "1"},
        {"sprites.0.aliasList.0.fullName", "Zw\xc3\xb6lf.png"},
        {"sprites.1.size.width", "9"},
        {"sprites.1.frameRect.x", "41"},
        {"sprites.1.frameRect.y", "4"},
        {"sprites.1.frameRect.width", "7"},
        {"sprites.1.frameRect.height", "7"},
        {"sprites.1.sourceRect.x", "1"},
        {"sprites.1.sourceRect.y", "2"},
        {"sprites.1.sourceRect.width", "7"},
        {"sprites.1.cornerOffset.x", "1"},
        {"sprites.1.cornerOffset.y", "2"},
        {"sprites.1.untrimmedSize.height", "10"},
        {"sprites.1.trimmed", "true"},
        {"sprites.1.rotated", "false"},
        {"sprites.2.rotated", "true"},
        {"sprites.2.frameRect.width", "10"},
        {"sprites.2.frameRect.height", "20"},
        {"sprites.2.frameRectWithoutRotation.x", "60"},
        {"sprites.2.frameRectWithoutRotation.width", "20"},
        {"sprites.2.frameRectWithoutRotation.height", "10"},
        {"sprites.2.frameRectRel.x", "0.46875"},
        {"sprites.2.frameRectRel.y", "0.046875"},
        {"sprites.2.frameRectRel.width", "0.078125"},
        {"sprites.2.frameRectRel.height", "0.3125"},
        {"sprites.0.fileData.absoluteFileName", source.toStdString()},
        {"sprites.0.fileData.fileSize", "5"},
        {"sprites.0.fileData.lastModified|date:\"yyyyMMddhhmmsszzz\"",
         info.lastModified().toString(QStringLiteral("yyyyMMddhhmmsszzz")).toStdString()},
        {"sprites.0.fileData.created|date:\"yyyyMMddhhmmsszzz\"",
         info.birthTime().toString(QStringLiteral("yyyyMMddhhmmsszzz")).toStdString()},
        {"sprites.0.position", ""},
        {"sprites.0.fileData.nosuch", ""},
        {"sprites.0.size.x", ""},
        {"nosuch.nosuch", ""},
    };
    QByteArray text;
    std::string expected;
    for (const auto& line : cases) {
        text += QByteArray("{{ ") + line.expression + "|safe }}\n";
        expected += line.value + '\n';
    }
    EXPECT_EQ(rendered(text), expected);
}

TEST_F(TemplateFormat, readsEverySettingByItsName) {
    settings.setReplaceList({QStringLiteral("a=b"), QStringLiteral("c")});
    settings.setFileList({GFileName(QStringLiteral("/x/1.png")), GFileName(QStringLiteral("/x/2.png"))});
    const struct {
        QByteArray path;
        const QObject* object;
    } objects[] = {
        {"settings", &settings},
        {"settings.globalSpriteSettings", settings.globalSpriteSettings()},
        {"settings.algorithmSettings", settings.algorithmSettings()},
    };
    QByteArray text;
    QByteArray expected;
    int count = 0;
    for (const auto& [path, object] : objects) {
        const QMetaObject* type = object->metaObject();
        for (int i = QObject::staticMetaObject.propertyCount(); i < type->propertyCount(); ++i) {
            const QMetaProperty property = type->property(i);
            const QVariant value = property.read(object);
            if (property.isEnumType() || !value.canConvert<QString>() || value.canConvert<QObject*>())
                continue;
            ++count;
            text += property.name() + QByteArray(" {{ ") + path + '.' + property.name() + "|safe }}\n";
            expected += property.name() + (' ' + value.toString().toUtf8()) + '\n';
        }
    }
    EXPECT_GT(count, 40);
    EXPECT_EQ(rendered(text), expected.toStdString());
    EXPECT_EQ(
        rendered("{% for f in settings.fileList %}{{ f }} {% endfor %}"
                 "{% for r in settings.replaceList %}{{ r }} {% endfor %}"
                 "{{ settings.fixedTextureSize.width }} {{ settings.algorithmSettings.basic.sortByName }}"
                 "{% ifequal settings.textureFormatName \"png\" %} png{% endifequal %}"),
        "/x/1.png /x/2.png a=b c -1 Best png");
}

TEST_F(TemplateFormat, sortsAllSpritesAsThePackerDoes) {
    using Basic = AlgorithmBasicSettings;
    texture = PackedTexture(0, 0);
    texture.setSize({64, 64});
    // Areas 20, 18, 20; half circumferences 12, 9, 9.
    for (const auto& [name, size] : {std::pair{"b", QSize(2, 10)}, {"a", QSize(6, 3)}, {"B", QSize(4, 5)}}) {
        PackedSprite sprite(QLatin1String(name), texture.sprites().size());
        sprite.setUntrimmedSize(size);
        sprite.setSize({1, 1});
        sprite.setPosition({0, 0});
        texture.add(sprite);
    }
    const QByteArray names = "{% for s in allSprites %}{{ s.fullName }}{% endfor %}";
    EXPECT_EQ(rendered(names), "Bab");
    settings.algorithmSettings()->setAlgorithmName(QStringLiteral("Basic"));
    Basic& basic = *settings.algorithmSettings()->basic();
    const struct {
        Basic::SortBy sortBy;
        const char* ascending;
        const char* descending;
    } cases[] = {
        {Basic::SortBy::Best, "baB", "baB"},  {Basic::SortBy::Name, "Bab", "baB"},
        {Basic::SortBy::Width, "bBa", "aBb"}, {Basic::SortBy::Height, "aBb", "bBa"},
        {Basic::SortBy::Area, "abB", "bBa"},  {Basic::SortBy::Circumference, "aBb", "baB"},
    };
    for (const auto& order : cases) {
        basic.setSortBy(order.sortBy);
        basic.setOrder(Basic::Order::Ascending);
        EXPECT_EQ(rendered(names), order.ascending) << int(order.sortBy);
        basic.setOrder(Basic::Order::Descending);
        EXPECT_EQ(rendered(names), order.descending) << int(order.sortBy);
    }
}

TEST_F(TemplateFormat, offersTheLibrarysTagsFiltersAndScripts) {
    settings.setTextureFileName(QStringLiteral("/x/a<b'&.png"));
    EXPECT_EQ(rendered("{{ texture.fullName|upper }} {{ texture.fullName|safe }}"),
              "A&lt;B&#39;&amp;.PNG a<b'&.png");
    add(QStringLiteral("mine/part.txt"), "[{{ s.trimmedName }}]");
    EXPECT_EQ(rendered("{% for s in sprites %}{% include \"part.txt\" %}{% endfor %}"),
              "[b/hero][a\"b\\c][Turn]");
    add(QStringLiteral("mine/base.txt"), "<{% block body %}{% endblock %}>");
    EXPECT_EQ(rendered("{% extends \"base.txt\" %}{% block body %}x{% endblock %}"), "<x>");
    EXPECT_EQ(
        rendered("{% regroup sprites by rotated as g %}{% for x in g %}{{ x.list|length }}{% "
                 "endfor %}"
                 "{% if 4|divisibleby:2 %} even{% endif %}{% range 1 6 2 as i %} {{ i }}{% endrange %}"),
        "21 even 1 3 5");
    add(QStringLiteral("mine/grantlee/5.0/calc.qs"),
        "function Twice(value) { return String(Number(value) * 2); }\n"
        "Twice.filterName = 'twice';\nLibrary.addFilter('Twice');\n");
    EXPECT_EQ(rendered("{% load calc %}{{ sprites.1.frameRect.x|twice }}"), "82");
}

TEST_F(TemplateFormat, failsWithoutHarm) {
    const auto failsToLoad = [&](const QByteArray& text, const char* reason) {
        const auto [code, message] = errorOfTemplate(text);
        EXPECT_EQ(code, 19) << text.left(60).toStdString();
        EXPECT_THAT(message, StartsWith("Failed to init exporter template main.txt: "))
            << text.left(60).toStdString();
        EXPECT_THAT(message, HasSubstr(reason));
    };
    failsToLoad("{% if %}", "if tag");
    failsToLoad("{{ texture|nosuch }}", "nosuch");
    failsToLoad("a\n{% load nosuch %}", "nosuch");
    // What the library doesn't survive.
    failsToLoad("a\n{% regroup sprites by fullName|upper as g %}", "line 2: The tag regroup");
    failsToLoad("{# {% regroup a by b %} #}{%  regroup by by x|lower|upper as g%}", "The tag regroup");
    for (const char* divisor :
         {"", ":0", ":\"2\"", ":zero", ":4294967296", ":00", ":'0'", ":2.x", ":_(\"2\")"})
        failsToLoad(QByteArray("{{ 5|divisibleby") + divisor + " }}", "divisibleby");
    failsToLoad("{% filter divisibleby:0 %}5{% endfilter %}", "divisibleby");
    failsToLoad("{{ \"a\"|center:2147483647 }}", "center");
    failsToLoad("{{ 5|floatformat:\"-2000000000\" }}", "floatformat");
    failsToLoad("{% range 1 5 -1 as x %}{% endrange %}", "range");
    for (const QByteArray& tag : {QByteArray("if a"), QByteArray("with a as b")})
        failsToLoad(("{% " + tag + " %}").repeated(20000), "nested");
    failsToLoad("{% if " + QByteArray("not ").repeated(100000) + "a %}{% endif %}", "longer than 2000");
    failsToLoad("{% include \"main.txt\" %}", "too deep");
    failsToLoad("{% extends \"main.txt\" %}", "too deep");
    failsToLoad(QByteArray((1 << 20) + 1, 'x'), "larger");
    // One that another includes is held to the same.
    add(QStringLiteral("mine/part.txt"), "{{ 5|divisibleby:0 }}");
    const auto [partCode, partMessage] = errorOfTemplate("{% include \"part.txt\" %}");
    EXPECT_EQ(partCode, 19);
    EXPECT_THAT(partMessage, StartsWith("Failed to init exporter template part.txt: line 1"));

    const auto [code, message] = errorOfTemplate("x{% include \"nosuch.txt\" %}");
    EXPECT_EQ(code, 19);
    EXPECT_THAT(message, StartsWith("Failed to write main.txt: "));
    EXPECT_THAT(message, HasSubstr("nosuch.txt"));
}

TEST_F(TemplateFormat, saysWhenItCantWrite) {
    // A loop that would go on for a long time if the failed output didn't end it.
    add(QStringLiteral("mine/main.txt"), "{% range 1 2000000000 as i %}{{ i }}{% endrange %}");
    DataExporterGeneric exporter(directory());
    exporter.setInput(&settings, texture);
    exporter.setFileName(folder.filePath(QStringLiteral("nosuch/out.txt")));
    EXPECT_EQ(errorOf([&] { exporter.write(); }),
              std::pair(19, "Failed to open " + exporter.fileName().toStdString() + " for writing"));
    // A disk without room.
    exporter.setFileName(QStringLiteral("/dev/full"));
    const auto [code, message] = errorOf([&] { exporter.write(); });
    EXPECT_EQ(code, 19);
    EXPECT_THAT(message, StartsWith("Failed to write main.txt: "));
    QFile::remove(directory() + QStringLiteral("/main.txt"));
    exporter.setFileName(output());
    EXPECT_THAT(errorOf([&] { exporter.write(); }).second,
                StartsWith("Failed to init exporter template main.txt: "));
}

TEST_F(TemplateFormat, shippedExampleShowsEveryProperty) {
    const QString plain = QStringLiteral(SORVANE_TEMPLATES "/plain");
    ASSERT_EQ(errorOf([&] { write(plain); }), std::pair(0, std::string()));
    const std::string text = written();
    EXPECT_THAT(text, HasSubstr("token   $token$\n"));
    EXPECT_THAT(text, HasSubstr("Sprites and aliases: 4\n"));
    EXPECT_THAT(text, HasSubstr("\n[a\"b\\c.png]\n"));
    EXPECT_THAT(text, HasSubstr("1. b/hero.png, also as Zw\xc3\xb6lf.png\n"));
    QFile source(plain + QStringLiteral("/plain.txt"));
    ASSERT_TRUE(source.open(QIODevice::ReadOnly));
    const std::string templateText = source.readAll().toStdString();
    for (const char* name : {"texture.size",
                             "texture.absoluteFileName",
                             "texture.trimmedName",
                             "texture.fullName",
                             "smartUpdateKey",
                             "settings.",
                             "sprite.size",
                             "sprite.aliasList",
                             "sprite.frameRect.",
                             "sprite.frameRectWithoutRotation",
                             "sprite.frameRectRel",
                             "sprite.rotated",
                             "sprite.sourceRect",
                             "sprite.trimmed ",
                             "sprite.cornerOffset",
                             "sprite.untrimmedSize",
                             "sprite.trimmedName",
                             "sprite.fullName",
                             "fileData.absoluteFileName",
                             "fileData.lastModified",
                             "fileData.created",
                             "fileData.fileSize"})
        EXPECT_THAT(templateText, HasSubstr(name));
}
