#include "DataSheet.h"
#include "Error.h"

#include <QDir>
#include <QFileInfo>

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
    // Identity and capabilities as projects and scripts know them: id, name, filter, extension, default file,
    // trimming, rotation, NPOT, trimmed names.
    const char* const rows[] = {
        "cocos2d|cocos2d|Cocos2d plist (*.plist)|plist|out.plist|TR-N",
        "cocos2d-0.99.4|cocos2d-0.99.4|Cocos2d plist (*.plist)|plist|out.plist|T--N",
        "cocos2d-original|cocos2d-original|Cocos2d plist (*.plist)|plist|out.plist|T--N",
        "json|JSON (Hash)|JSON (*.json)|json|out.json|TR--",
        "unity|Unity3D|Unity (*.txt)|txt|out.json|TR--",
        "json-array|JSON (Array)|JSON (*.json)|json|out.json|TR--",
        "bhive|BHive|BHive (*.json)|json|out.json|TR-N",
    };
    QStringList known = registry().ids();
    for (const char* row : rows) {
        const QStringList fields = QString::fromLatin1(row).split(QLatin1Char('|'));
        const DataExporter* exporter = registry().find(fields[0]);
        ASSERT_TRUE(exporter) << row;
        EXPECT_EQ(exporter->displayName(), fields[1]);
        EXPECT_EQ(exporter->fileFilter(), fields[2]);
        EXPECT_EQ(exporter->fileExtension(), fields[3]);
        EXPECT_EQ(exporter->defaultFileName(), fields[4]);
        const QString flags =
            QString(exporter->supportsTrimming() ? "T" : "-") + (exporter->supportsRotation() ? "R" : "-") +
            (exporter->supportsNPOT() ? "P" : "-") + (exporter->showsTrimNames() ? "N" : "-");
        EXPECT_EQ(flags, fields[5]) << row;
        EXPECT_EQ(exporter->rotationDirection(), 0);
        EXPECT_TRUE(exporter->canTrim());
        EXPECT_FALSE(exporter->isTemplateBased());
        EXPECT_TRUE(exporter->showsTexturePath());
        EXPECT_EQ(registry().findFormat(fields[0])->supportsRotation, exporter->supportsRotation());
        // In the order of the table.
        const int position = known.indexOf(fields[0]);
        ASSERT_GE(position, 0) << row;
        known = known.mid(position + 1);
    }
}

TEST(DataExporterRegistry, findsByIdInItsCaseAndByAliasInAny) {
    EXPECT_TRUE(registry().find(QStringLiteral("json")));
    EXPECT_FALSE(registry().find(QStringLiteral("JSON")));
    EXPECT_FALSE(registry().find(QString()));
    EXPECT_FALSE(registry().findFormat(QStringLiteral("JSON")));

    registry().add(std::make_unique<NamedExporter>(
        "test-own", QStringList{QStringLiteral("Json"), QStringLiteral("OLD-own")}, "JSON (a)"));
    EXPECT_EQ(registry().find(QStringLiteral("old-OWN"))->id(), QStringLiteral("test-own"));
    EXPECT_EQ(registry().find(QStringLiteral("json"))->id(), QStringLiteral("json"));
    EXPECT_EQ(registry().find(QStringLiteral("JSON"))->id(), QStringLiteral("test-own"));
    EXPECT_EQ(registry().ids().last(), QStringLiteral("test-own"));

    QStringList names;
    for (const DataExporter* exporter : registry().sortedExporters())
        names.append(exporter->displayName().toLower());
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    EXPECT_EQ(names.size(), registry().exporters().size());
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
    // A format that always lists full names has no such trouble.
    DataExporter* bhive = registry().find(QStringLiteral("bhive"));
    bhive->setInput(&settings, texture);
    EXPECT_TRUE(bhive->duplicateNames().isEmpty());
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
    const Row rows[] = {
        {"cocos2d", "Failed to write plist file %1"}, {"cocos2d-original", "Failed to write plist file %1"},
        {"json", "Failed to write json file %1"},     {"json-array", "Failed to write json file %1"},
        {"unity", "Failed to write json file %1"},    {"bhive", "Failed to write json file %1"}};
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
