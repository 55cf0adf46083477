#include "DataSheet.h"
#include "Error.h"

#include <QDir>

namespace {

DataExporterRegistry& registry() { return DataExporterRegistry::instance(); }

/// A format that only has an identity.
class NamedExporter : public DataExporter {
public:
    NamedExporter(const char* id, const QStringList& aliases, const char* displayName)
        : DataExporter({.id = QLatin1String(id),
                        .displayName = QLatin1String(displayName),
                        .description = {},
                        .fileFilter = {},
                        .fileExtension = {},
                        .defaultFileName = QStringLiteral("out.txt"),
                        .aliases = aliases}) {}
    void write() const override {}
};

} // namespace

TEST(DataExporterRegistry, listsTheFormatsInTheirOrder) {
    // Identity and capabilities as projects and scripts know them: id, name, description, filter, extension,
    // default file; trimming (t: but not by itself on the command line), rotation (r: counter-clockwise),
    // NPOT; editors of the texture's path, of trimmed names, of libGDX and AndEngine.
    const char* const rows[] = {
        "cocos2d|cocos2d|plist format for cocos2d|Cocos2d plist (*.plist)|plist|out.plist|TR-/pn--",
        "cocos2d-0.99.4|cocos2d-0.99.4|plist format for 'old' cocos2d|"
        "Cocos2d plist (*.plist)|plist|out.plist|T--/pn--",
        "cocos2d-original|cocos2d-original|plist format for 'old' (original version)|"
        "Cocos2d plist (*.plist)|plist|out.plist|T--/pn--",
        "corona|Corona TM SDK|lua file for Corona TM SDK|Corona TM SDK Lua (*.lua)|lua|out.lua|T--/p---",
        "sparrow|Sparrow / Starling|xml file for Sparrow/Starling SDK|Sparrow XML "
        "(*.xml)|xml|out.xml|T--/p---",
        "libgdx|LibGDX|text file for lib GDX|Lib GDX (*.txt)|txt|pack|Tr-/p-g-",
        "json|JSON (Hash)|text file for json/html as hash|JSON (*.json)|json|out.json|TR-/p---",
        "unity|Unity3D|text file for Unity3D, json format but .txt ending|"
        "Unity (*.txt)|txt|out.json|TR-/p---",
        "json-array|JSON (Array)|text file for json/html as array|JSON (*.json)|json|out.json|TR-/p---",
        "css|css|css format for web design|CSS (*.css)|css|out.css|--P/----",
        "gideros|Gideros|Format for Gideros|Gideros (*.txt)|txt|out.txt|T--/p---",
        "cegui|CEGUI / OGRE|Format for CEGUI / OGRE|CEGUI (*.xml)|xml|out.xml|---/pn--",
        "andengine|AndEngine|Format for AndEngine|AndEngine (*.xml)|xml|out.xml|tR-/pn-a",
        "agk|AppGameKit|Format for AppGameKit|AppGameKit (*.txt)|txt|out.txt|---/pn--",
        "slick2d|Slick2D|Format for Slick2D|Slick2D (*.def)|def|out.def|---/pn--",
        "moai|Moai|Format for Moai|Moai (*.lua)|lua|out.lua|TR-/pn--",
        "bhive|BHive|Format for BHive|BHive (*.json)|json|out.json|TR-/pn--",
        "xml|Generic XML|Generic XML format|XML (*.xml)|xml|out.xml|TR-/pn--",
    };
    const DataExporterRegistry formats;
    QStringList described;
    for (const DataExporter* format : formats.exporters()) {
        const auto flag = [](bool set, const char* letter) { return QLatin1String(set ? letter : "-"); };
        const QString flags = flag(format->supportsTrimming(), format->canTrim() ? "T" : "t") +
                              flag(format->supportsRotation(), format->rotationDirection() ? "r" : "R") +
                              flag(format->supportsNPOT(), "P") + QLatin1Char('/') +
                              flag(format->showsTexturePath(), "p") + flag(format->showsTrimNames(), "n") +
                              flag(format->showsLibGdxFiltering(), "g") +
                              flag(format->showsAndEngineOptions(), "a");
        described.append(QStringList{format->id(), format->displayName(), format->description(),
                                     format->fileFilter(), format->fileExtension(), format->defaultFileName(),
                                     flags}
                             .join(QLatin1Char('|')));
        EXPECT_FALSE(format->isTemplateBased());
        EXPECT_EQ(formats.findFormat(format->id())->canTrim, format->canTrim());
    }
    ASSERT_EQ(described.size(), int(std::size(rows)));
    for (int i = 0; i < described.size(); ++i)
        EXPECT_EQ(described[i].toStdString(), rows[i]);
}

TEST(DataExporterRegistry, findsByIdInItsCaseAndByAliasInAny) {
    DataExporterRegistry formats;
    EXPECT_TRUE(formats.find(QStringLiteral("json")));
    EXPECT_FALSE(formats.find(QStringLiteral("JSON")));
    EXPECT_FALSE(formats.find(QString()));
    EXPECT_FALSE(formats.findFormat(QStringLiteral("JSON")));

    formats.add(std::make_unique<NamedExporter>(
        "test-own", QStringList{QStringLiteral("Json"), QStringLiteral("OLD-own")}, "JSON (a)"));
    EXPECT_EQ(formats.find(QStringLiteral("old-OWN"))->id(), QStringLiteral("test-own"));
    EXPECT_EQ(formats.find(QStringLiteral("json"))->id(), QStringLiteral("json"));
    EXPECT_EQ(formats.find(QStringLiteral("JSON"))->id(), QStringLiteral("test-own"));
    EXPECT_EQ(formats.ids().last(), QStringLiteral("test-own"));

    QStringList names;
    for (const DataExporter* exporter : formats.sortedExporters())
        names.append(exporter->displayName().toLower());
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_EQ(names.size(), formats.exporters().size());
    EXPECT_LT(names.indexOf(QStringLiteral("json (a)")), names.indexOf(QStringLiteral("json (array)")));
}

TEST(DataExporter, refersToTheTextureByItsFileName) {
    NamedExporter exporter("x", {}, "x");
    EXPECT_EQ(exporter.fileName(), QStringLiteral("out.txt"));
    Settings settings;
    settings.setTextureFileName(QStringLiteral("/any/folder/sheet %1.png"));
    exporter.setInput(&settings, PackedTexture());
    EXPECT_EQ(exporter.textureFilePath(), QStringLiteral("sheet %1.png"));
    settings.setTextureSubPath(QStringLiteral("img%2"));
    EXPECT_EQ(exporter.textureFilePath(), QStringLiteral("img%2/sheet %1.png"));
    settings.setTextureSubPath(QStringLiteral("img/"));
    EXPECT_EQ(exporter.textureFilePath(), QStringLiteral("img//sheet %1.png"));
}

TEST(DataExporter, sortsSpritesAndAliasesByCodeUnit) {
    NamedExporter exporter("x", {}, "x");
    Settings settings;
    exporter.setInput(&settings, dataSheet());
    QStringList names;
    for (const PackedSprite& sprite : exporter.sortedSprites())
        names.append(sprite.fullName());
    EXPECT_EQ(names.join(QLatin1Char(' ')),
              QString::fromUtf8("Turn.png Zw\xc3\xb6lf.png a\"b\\c.png b/hero.png"));
}

TEST(DataExporter, tellsNamesThatFallTogether) {
    PackedTexture texture(0, 0);
    for (const char* name : {"b.png", "a.png", "a.bmp", "c.png"})
        texture.add(PackedSprite(QLatin1String(name), 1));
    Settings settings;
    NamedExporter exporter("x", {}, "x");
    exporter.setInput(&settings, texture);
    EXPECT_TRUE(exporter.duplicateNames().isEmpty());
    settings.setTrimSpriteNames(true);
    EXPECT_EQ(exporter.duplicateNames(),
              QStringList(QStringLiteral("Sprites with the same name \"a\" in the data file: a.bmp, a.png")));
    // Formats that name sprites in a way of their own.
    struct Row {
        const char* format;
        QStringList sprites;
        const char* fallTogether; ///< null: they don't
    };
    const Row rows[] = {{"bhive", {"a.png", "a.bmp"}, nullptr},
                        {"sparrow", {"a.png", "a.bmp"}, "a"},
                        {"cegui", {"a.png", "a.bmp"}, "a"},
                        {"andengine", {"x/a-b.png", "x_A_b"}, "X_A_B"},
                        {"gideros", {"a/b", "a\\b", "a_b"}, "a_b"},
                        {"libgdx", {"walk_01.png", "walk_1"}, "walk_1"},
                        {"libgdx", {"walk_01", "walk_01_"}, nullptr},
                        {"css", {"a b-hover", "a/b-hover.png"}, "a-b:hover"},
                        {"css", {"a-hover.png", "a", "A-hover"}, nullptr}};
    settings.setTrimSpriteNames(false);
    for (const Row& row : rows) {
        DataExporter* format = registry().find(QLatin1String(row.format));
        format->setInput(&settings, sheetOf(row.sprites));
        QStringList expected;
        if (row.fallTogether) {
            QStringList sorted = row.sprites;
            sorted.sort();
            expected.append(QStringLiteral("Sprites with the same name \"%1\" in the data file: %2")
                                .arg(QLatin1String(row.fallTogether), sorted.join(QStringLiteral(", "))));
        }
        EXPECT_EQ(format->duplicateNames(), expected) << row.format;
    }
}

TEST(DataExporter, carriesTheStampOfTheSources) {
    const QString stamp = registry().find(QStringLiteral("json"))->versionString();
    EXPECT_EQ(stamp.size(), 64);
    EXPECT_EQ(stamp, registry().find(QStringLiteral("cocos2d"))->versionString());
}

TEST(DataExporter, leavesNoHalfWrittenFile) {
    struct Row {
        const char* format;
        const char* message;
    };
    const Row rows[] = {{"cocos2d", "Failed to write plist file %1"},
                        {"cocos2d-original", "Failed to write plist file %1"},
                        {"json", "Failed to write json file %1"},
                        {"json-array", "Failed to write json file %1"},
                        {"unity", "Failed to write json file %1"},
                        {"bhive", "Failed to write json file %1"},
                        {"corona", "Failed to write lua file %1"},
                        {"moai", "Failed to write lua file %1"},
                        {"sparrow", "Failed to write xml file %1"},
                        {"cegui", "Failed to write xml file %1"},
                        {"xml", "Failed to write xml file %1"},
                        {"andengine", "Failed to write xml file %1"},
                        {"libgdx", "Failed to write xml file %1"},
                        {"css", "Failed to write css file %1"},
                        {"agk", "Failed to write agk file %1"},
                        {"slick2d", "Failed to write agk file %1"},
                        {"gideros", "Failed to write giderous output file %1"}};
    Settings settings;
    QTemporaryDir folder;
    const QString missing = folder.filePath(QStringLiteral("missing/out"));
    for (const Row& row : rows) {
        DataExporter* exporter = registry().find(QLatin1String(row.format));
        exporter->setInput(&settings, dataSheet());
        // No folder, no file in the way of one, and a full disk.
        for (const QString& name : {missing, folder.path(), QStringLiteral("/dev/full")}) {
            exporter->setFileName(name);
            try {
                exporter->write();
                FAIL() << row.format << ' ' << name.toStdString();
            } catch (const Error& error) {
                EXPECT_EQ(error.code(), 11);
                EXPECT_EQ(error.message(), QString::fromLatin1(row.message).arg(name));
            }
        }
    }
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}
