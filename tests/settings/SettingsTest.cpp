#include "Settings.h"
#include "DataFormats.h"
#include "Error.h"
#include "GlobalSettings.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using TrimMode = SpriteSettings::TrimMode;

void addVariant(Settings& settings, double scale, bool fractional = false) {
    auto* variant = new AutoSDSettings;
    variant->setScale(scale);
    variant->setAcceptFractionalValues(fractional);
    settings.addAutoSDSettings(variant);
}

QString writeFile(const QTemporaryDir& folder, const QByteArray& content) {
    const QString name = folder.filePath(QStringLiteral("project.svs"));
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return name;
}

/// The error of loading a project with this content of its top struct.
Error loadError(const QByteArray& keys) {
    const QTemporaryDir folder;
    const QString name = writeFile(folder, "<?xml version=\"1.0\"?>\n<data version=\"1.0\">\n"
                                           "<struct type=\"Settings\">" +
                                               keys + "</struct></data>");
    try {
        delete Settings::load(name);
    } catch (const Error& error) {
        return error;
    }
    return Error(0, QStringLiteral("no error"));
}

/// Two formats: one that can do everything, one that can do nothing.
struct TestFormats : DataFormats {
    std::optional<DataFormat> findFormat(const QString& name) const override {
        if (name == QLatin1String("able"))
            return DataFormat{name, true, true, true, true};
        if (name == QLatin1String("poor"))
            return DataFormat{name, false, false, false, false};
        return std::nullopt;
    }
    QStringList formatIds() const override { return {QStringLiteral("able"), QStringLiteral("poor")}; }
};

} // namespace

TEST(Settings, defaultsOfANewProject) {
    const Settings settings;
    EXPECT_EQ(settings.dataFormat(), QStringLiteral("cocos2d"));
    EXPECT_EQ(settings.maxTextureSize(), QSize(2048, 2048));
    EXPECT_EQ(settings.fixedTextureSize(), QSize(-1, -1));
    EXPECT_EQ(settings.shapePadding(), 2u);
    EXPECT_EQ(settings.borderPadding(), 2u);
    EXPECT_EQ(settings.algorithmSettings()->sizeConstraints(), AlgorithmSettings::SizeConstraints::POT);
    EXPECT_EQ(settings.andEngine()->magFilter(), AndEngine::MagFilter::MagLinear);
    EXPECT_EQ(settings.globalSpriteSettings()->trimMode(), TrimMode::Trim);
    EXPECT_FALSE(settings.isDirty());
}

TEST(Settings, enumNamesAndTheirErrors) {
    Settings settings;
    QSignalSpy value(&settings, &SettingsBase::onOutputFormatChanged);
    QSignalSpy name(&settings, &SettingsBase::onOutputFormatNameChanged);
    settings.setOutputFormatName(QStringLiteral("RGBA4444"));
    EXPECT_EQ(settings.outputFormat(), SettingsBase::OutputFormat::RGBA4444);
    EXPECT_EQ(value.size(), 1);
    ASSERT_EQ(name.size(), 1);
    EXPECT_EQ(name.at(0).at(0).toString(), QStringLiteral("RGBA4444"));
    try {
        settings.algorithmSettings()->setFreeSizeModeName(QStringLiteral("best"));
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), 55);
        EXPECT_EQ(error.message(),
                  QStringLiteral("best is not element of enum AlgorithmFreeSizeMode. Possible values "
                                 "are Fast, Good, Best"));
    }
    EXPECT_EQ(GEnumInfo<ScaleMode>::instance().displayName(QStringLiteral("Fast")),
              QStringLiteral("Fast (Nearest Neighbor)"));
    EXPECT_EQ(GEnumInfo<AndEngine::MinFilter>::instance().description(QStringLiteral("Nearest")),
              QStringLiteral("nearest"));
}

TEST(Settings, verboseIsNoStoredValue) {
    Settings settings;
    const QString before = settings.toXml();
    settings.setVerbose(true);
    EXPECT_TRUE(settings.verboseRequested());
    EXPECT_FALSE(settings.verbose());
    EXPECT_EQ(settings.toXml(), before);
}

TEST(Settings, listOperations) {
    Settings settings;
    QSignalSpy changed(&settings, &SettingsBase::onReplaceListChanged);
    settings.addReplaceList(QStringLiteral("a=b"));
    settings.insertReplaceList(0, QStringLiteral("c=d"));
    settings.setDirty(false);
    EXPECT_EQ(settings.takeReplaceList(1), QStringLiteral("a=b"));
    EXPECT_FALSE(settings.isDirty()) << "taking a text leaves the mark alone";
    settings.clearReplaceList();
    EXPECT_TRUE(settings.isDirty());
    EXPECT_EQ(changed.size(), 4);

    addVariant(settings, 0.5);
    QSignalSpy variants(&settings, &SettingsBase::onAutoSDSettingsChanged);
    settings.setDirty(false);
    settings.setAutoSDSettings(settings.autoSDSettings());
    AutoSDSettings* variant = settings.autoSDSettings().first();
    variant->setScale(0.25);
    EXPECT_EQ(variants.size(), 1) << "an item is connected once";
    EXPECT_TRUE(settings.isDirty());
    settings.setDirty(false);
    const std::unique_ptr<AutoSDSettings> taken(settings.takeAutoSDSettings(0));
    EXPECT_TRUE(settings.isDirty());
    EXPECT_EQ(taken->parent(), nullptr);
    taken->setScale(0.75);
    EXPECT_EQ(variants.size(), 2) << "a taken item is not heard any more";
}

TEST(Settings, fileListEditing) {
    Settings settings;
    settings.addFile(QStringLiteral("relative.png"));
    settings.addFile(QStringLiteral("relative.png"));
    settings.addFiles({QStringLiteral("/x/a.png"), QStringLiteral("/x/../x/b.png")});
    EXPECT_EQ(settings.fileList(), (GFileNameList{QStringLiteral("relative.png"), QStringLiteral("/x/a.png"),
                                                  QStringLiteral("/x/b.png")}));
    settings.removeFiles({QStringLiteral("/x/a.png")});
    EXPECT_EQ(settings.fileList().size(), 2);
}

TEST(Settings, commonBaseFactor) {
    struct Case {
        uint divisorX, divisorY;
        QList<double> scales;
        double globalScale;
        int factor;
    };
    const Case cases[] = {{3, 2, {}, 1.0, 6},      {1, 1, {0.5}, 1.0, 2}, {1, 1, {0.3}, 1.0, 10},
                          {1, 1, {0.37}, 1.0, -1}, {1, 1, {0.5}, 0.5, 4}, {1, 1, {0.5, 0.25}, 1.0, 4},
                          {0, 1, {}, 1.0, -1}};
    for (const Case& c : cases) {
        Settings settings;
        settings.setCommonDivisorX(c.divisorX);
        settings.setCommonDivisorY(c.divisorY);
        settings.globalSpriteSettings()->setScale(c.globalScale);
        for (const double scale : c.scales)
            addVariant(settings, scale);
        EXPECT_EQ(settings.commonBaseFactor(), c.factor) << c.divisorX << ' ' << c.divisorY;
    }
    Settings settings;
    addVariant(settings, 0.5);
    addVariant(settings, 0.37, true);
    EXPECT_EQ(settings.commonBaseFactor(), 2) << "a fractional variant doesn't restrict the factor";
    EXPECT_FLOAT_EQ(settings.smallestScale(), 0.37f);
    EXPECT_EQ(settings.commonBaseSize(), 1);
}

TEST(Settings, dataFormatBringsItsLimits) {
    static const TestFormats formats;
    DataFormats::setInstance(&formats);
    Settings settings;
    settings.setDataFormatChecked(QStringLiteral("poor"));
    EXPECT_FALSE(settings.allowRotation());
    EXPECT_EQ(settings.globalSpriteSettings()->trimMode(), TrimMode::None);
    settings.setDataFormatChecked(QStringLiteral("able"));
    EXPECT_FALSE(settings.allowRotation()) << "nothing is switched on again";
    settings.globalSpriteSettings()->setTrimMode(TrimMode::CropKeepPos);
    settings.setDataFormatChecked(QStringLiteral("poor"));
    EXPECT_EQ(settings.globalSpriteSettings()->trimMode(), TrimMode::CropKeepPos);
    try {
        settings.setDataFormatChecked(QStringLiteral("Able"));
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), 19);
        EXPECT_EQ(error.message(), QStringLiteral("Unknown format: Able\nAvailable formats: able, poor"));
    }
    DataFormats::setInstance(nullptr);
}

TEST(ProjectFile, savesAndLoads) {
    const QTemporaryDir folder;
    Settings settings;
    settings.setTextureFileName(folder.filePath(QStringLiteral("out/a.png")));
    settings.setDataFileName(folder.filePath(QStringLiteral("out/a.json")));
    settings.andEngine()->setJavaFileName(folder.filePath(QStringLiteral("A.java")));
    settings.addFile(folder.filePath(QStringLiteral("sprites")));
    settings.globalSpriteSettings()->setScale(1.2345678);
    addVariant(settings, 0.5);
    const QString name = folder.filePath(QStringLiteral("p.svs"));
    settings.save(name);
    EXPECT_FALSE(settings.isDirty());
    EXPECT_EQ(settings.fileName(), name);
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<data version=\"1.0\">\n"
                                 "    <struct type=\"Settings\">\n"
                                 "        <key>fileFormatVersion</key>\n        <int>1</int>\n"));
    EXPECT_TRUE(bytes.contains("<filename>out/a.png</filename>"));

    const std::unique_ptr<Settings> loaded(Settings::load(name));
    EXPECT_EQ(loaded->toXml(), settings.toXml());
    EXPECT_EQ(loaded->fileName(), name);
    EXPECT_FALSE(loaded->isDirty());
    EXPECT_DOUBLE_EQ(loaded->globalSpriteSettings()->scale(), 1.23457) << "six digits are kept";
    EXPECT_EQ(loaded->autoSDSettings().size(), 1);

    // Longer and then shorter content in the same place.
    settings.setTextureSubPath(QString(5000, QLatin1Char('x')));
    settings.save(name);
    settings.setTextureSubPath(QString());
    settings.save(name);
    QFile again(name);
    ASSERT_TRUE(again.open(QIODevice::ReadOnly));
    EXPECT_EQ(again.readAll(), bytes);
    EXPECT_THROW(settings.save(folder.filePath(QStringLiteral("no/folder/p.svs"))), Error);
    EXPECT_EQ(settings.fileName(), name);
    Settings unwritable;
    unwritable.setVariation(QStringLiteral("bell\a"));
    unwritable.setDirty(false);
    EXPECT_THROW(unwritable.save(name), Error);
    EXPECT_EQ(unwritable.fileFormatVersion(), 0);
    EXPECT_FALSE(unwritable.isDirty());
    again.seek(0);
    EXPECT_EQ(again.readAll(), bytes);
}

TEST(ProjectFile, namesThatWereNotSetStayUnset) {
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("p.svs"));
    Settings().save(name);
    const std::unique_ptr<Settings> loaded(Settings::load(name));
    EXPECT_TRUE(loaded->textureFileName().isEmpty());
    EXPECT_TRUE(loaded->dataFileName().isEmpty());
    EXPECT_TRUE(loaded->andEngine()->javaFileName().isEmpty());
}

TEST(ProjectFile, migratesVersionZero) {
    const QTemporaryDir folder;
    const auto load = [&folder](const QByteArray& keys) {
        return std::unique_ptr<Settings>(Settings::load(writeFile(
            folder, "<?xml version=\"1.0\"?><data><struct type=\"Settings\">" + keys + "</struct></data>")));
    };
    const auto old = load("<key>allowFreeSize</key><true/><key>defaultExtension</key><string>-hd</string>"
                          "<key>globalSpriteSettings</key><struct type=\"SpriteSettings\">"
                          "<key>trim</key><false/><key>crop</key><true/></struct>");
    EXPECT_EQ(old->algorithmSettings()->sizeConstraints(), AlgorithmSettings::SizeConstraints::AnySize);
    EXPECT_EQ(old->globalSpriteSettings()->trimMode(), TrimMode::CropKeepPos);
    EXPECT_EQ(old->mainExtension(), QStringLiteral("-hd"));
    EXPECT_EQ(old->fileFormatVersion(), 1);
    EXPECT_FALSE(old->isDirty());

    const auto current = load("<key>fileFormatVersion</key><int>1</int><key>allowFreeSize</key><true/>");
    EXPECT_EQ(current->algorithmSettings()->sizeConstraints(), AlgorithmSettings::SizeConstraints::POT);
    // Keys of a later version are passed over, whatever their values are.
    const auto later = load("<key>fileFormatVersion</key><int>7</int><key>new</key><array><x/></array>"
                            "<key>dpi</key><uint>90</uint>");
    EXPECT_EQ(later->dpi(), 90u);
}

TEST(ProjectFile, refusesWhatIsWrong) {
    struct Case {
        const char* keys;
        int code;
        const char* message;
    };
    const Case cases[] = {
        {"<int>1</int>", 39, "<key> missign in <struct>"},
        {"\n<key>dpi</key><int>1</int>", 39, "Trying to parse a node of type int as uint (line 4)"},
        {"<key>dpi</key>", 39, "Trying to parse a node of type  as uint (line -1)"},
        {"<key>libGdx</key><string/>", 39, "Trying to parse a node of type string as struct"},
        {"<key>fileList</key><string/>", 39, "Trying to parse a node of type string as array"},
        {"<key>libGdx</key><struct type=\"AndEngine\"/>", 39, "Can't create instance of AndEngine"},
        {"<key>libGdx</key><struct type=\"Other\"/>", 39, "Can't create instance of Other"},
        {"<key>maxTextureSize</key><QSize><int>1</int></QSize>", 39, "<key> missign in <QSize>"},
        {"<key>ditherType</key><enum type=\"SpriteSettings::TrimMode\">Trim</enum>", 39,
         "Trying to parse node of enum type SpriteSettings::TrimMode as SettingsBase::DitherType (line 3)"},
        {"<key>ditherType</key><enum type=\"SettingsBase::DitherType\"> Linux </enum>", 55,
         "Linux is not element of enum DitherType. Possible values are NearestNeighbour, Linear, "
         "FloydSteinberg, "
         "FloydSteinbergAlpha, Atkinson, AtkinsonAlpha"},
    };
    for (const Case& c : cases) {
        const Error error = loadError(c.keys);
        EXPECT_EQ(error.code(), c.code) << c.keys;
        EXPECT_EQ(error.message(), QString::fromUtf8(c.message)) << c.keys;
    }
    EXPECT_EQ(loadError("<key>").code(), 39) << "malformed";
    EXPECT_EQ(loadError(QByteArray("<key>a</key><array>").repeated(100000)).code(), 39) << "nested too deep";

    const QTemporaryDir folder;
    const auto errorOf = [](const QString& name) {
        try {
            delete Settings::load(name);
        } catch (const Error& error) {
            return error;
        }
        return Error(0, QStringLiteral("no error"));
    };
    EXPECT_EQ(errorOf(writeFile(folder, "<?xml version=\"1.0\"?><plist/>")).message(),
              QStringLiteral("No <data> element found at the top-level of the file (plist)!"));
    EXPECT_EQ(errorOf(writeFile(folder, "<?xml version=\"1.0\"?><!DOCTYPE data [<!ENTITY a \"x\">]><data/>"))
                  .code(),
              39);
    // An encoding that hides brackets from whoever counts them.
    EXPECT_EQ(errorOf(writeFile(folder, "<?xml version=\"1.0\" encoding=\"UTF-7\"?><data/>")).code(), 39);
    EXPECT_EQ(errorOf(writeFile(folder, " <?xml version=\"1.0\"?><data/>")).message(),
              QStringLiteral("File format error"));
    const Error missing = errorOf(folder.filePath(QStringLiteral("none.svs")));
    EXPECT_EQ(missing.code(), 22);
    EXPECT_TRUE(missing.message().startsWith(QStringLiteral("Can't open file ")));
}

TEST(ProjectFile, userDefaults) {
    Settings settings;
    settings.setDpi(96);
    settings.setTextureFileName(QStringLiteral("/a/b.png"));
    settings.addFile(QStringLiteral("/a/sprites"));
    settings.saveAsDefault();
    const QTemporaryDir folder;
    const std::unique_ptr<Settings> fresh(Settings::load(writeFile(folder, QByteArray())));
    EXPECT_EQ(fresh->dpi(), 96u);
    EXPECT_TRUE(fresh->textureFileName().isEmpty());
    EXPECT_TRUE(fresh->fileList().isEmpty());
    EXPECT_TRUE(fresh->fileName().isEmpty());
    EXPECT_FALSE(fresh->isDirty());
    GlobalSettings().remove(QStringLiteral("defaultSettings"));
    const std::unique_ptr<Settings> plain(Settings::createDefault());
    EXPECT_EQ(plain->dpi(), 72u);
}
