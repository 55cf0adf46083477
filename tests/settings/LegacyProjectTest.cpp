// Streams are made with the toolkit's own writer, in the version that the first generation used.

#include "LegacyProject.h"

#include "DataFormats.h"
#include "Error.h"
#include "Settings.h"

#include <QDataStream>
#include <QFile>
#include <QTemporaryDir>
#include <QVariant>

#include <gtest/gtest.h>

namespace {

const QString projectName = QStringLiteral("/base/game/project.svs");

struct LegacyFormats : DataFormats {
    std::optional<DataFormat> findFormat(const QString& name) const override {
        if (name == QLatin1String("cocos2d"))
            return DataFormat{name, true, true, true, true};
        if (name == QLatin1String("css"))
            return DataFormat{name, false, false, false, true};
        return std::nullopt;
    }
    QStringList formatIds() const override { return {QStringLiteral("cocos2d"), QStringLiteral("css")}; }
};

class LegacyProject : public testing::Test {
protected:
    void SetUp() override { DataFormats::setInstance(&m_formats); }
    void TearDown() override { DataFormats::setInstance(nullptr); }

private:
    LegacyFormats m_formats;
};

struct Header {
    QString magic = QStringLiteral("Sorvane");
    QString version = QStringLiteral("1.2.3");
    qint32 major = 1;
    qint32 minor = 0;
    qint32 third = 7;
};

QByteArray headerBytes(const Header& header = {}) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_4_8);
    stream << header.magic << header.version << header.major << header.minor << header.third;
    return bytes;
}

template <typename T>
QByteArray streamed(const T& value) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_4_8);
    stream << value;
    return bytes;
}

QByteArray projectBytes(const QHash<QString, QVariant>& values) { return headerBytes() + streamed(values); }

/// A project of one entry whose value is these bytes.
QByteArray rawValue(const char* key, const QByteArray& value) {
    return headerBytes() + streamed(quint32(1)) + streamed(QString::fromLatin1(key)) + value;
}

QByteArray hex(const char* digits) { return QByteArray::fromHex(digits); }

/// The loaded settings as text; an error as its code and text.
QString outcome(const QByteArray& bytes) {
    try {
        return parseLegacyProject(bytes, projectName)->toXml();
    } catch (const Error& error) {
        return QStringLiteral("%1 %2").arg(error.code()).arg(error.message());
    }
}

QString outcome(const char* key, const QVariant& value) {
    return outcome(projectBytes({{QLatin1String(key), value}}));
}

/// A property by its path through the nested objects.
QVariant property(const QObject* object, const QString& path) {
    const int dot = path.indexOf(QLatin1Char('.'));
    const QVariant value = object->property(path.left(dot).toLatin1().constData());
    return dot < 0 ? value : property(value.value<QObject*>(), path.mid(dot + 1));
}

/// The property after loading a project of this one value.
QVariant loadedValue(const char* path, const char* key, const QVariant& value) {
    const auto settings = parseLegacyProject(projectBytes({{QLatin1String(key), value}}), projectName);
    const QVariant result = property(settings.get(), QLatin1String(path));
    EXPECT_TRUE(result.isValid()) << path;
    return result;
}

/// The same as text.
QString loaded(const char* path, const char* key, const QVariant& value) {
    const QVariant result = loadedValue(path, key, value);
    if (result.type() == QVariant::Size)
        return QStringLiteral("%1x%2").arg(result.toSize().width()).arg(result.toSize().height());
    if (result.userType() == qMetaTypeId<GFileName>())
        return result.value<GFileName>().path();
    if (result.userType() == qMetaTypeId<GFileNameList>()) {
        QStringList files;
        for (const GFileName& file : result.value<GFileNameList>())
            files.append(file.path());
        return files.join(QLatin1Char('|'));
    }
    return result.type() == QVariant::StringList ? result.toStringList().join(QLatin1Char('|'))
                                                 : result.toString();
}

const QStringList twoTexts = {QStringLiteral("a=b"), QStringLiteral("c")};

/// Every key, none with its default.
const QHash<QString, QVariant> fullProject = {
    {"andengine-minfilter", "nearest"},
    {"andengine-magfilter", "nearest"},
    {"libGdxFilteringX", "MipMap"},
    {"libGdxFilteringY", "Nearest"},
    {"andengine-wrapt", "repeat"},
    {"andengine-wraps", "repeat"},
    {"flipPVR", true},
    {"autoAliasEnabled", false},
    {"algorithm", "Basic"},
    {"dataFormat", "css"},
    {"dataFileName", "out/data.css"},
    {"andengine-java", "out/Atlas.java"},
    {"textureFileName", "out/sheet@2x.pvr.ccz"},
    {"trimSpriteNames", true},
    {"allowRotation", false},
    {"backgroundColor", 0xff102030u},
    {"shapeDebug", true},
    {"scale", 0.5f},
    {"dpi", 96},
    {"jpgQuality", 50},
    {"extrude", 3u},
    {"andengine-packagename", "Atlas"},
    {"trim", false},
    {"crop", true},
    {"trimThreshold", 9u},
    {"textureSubPath", "sub"},
    {"autoSD", true},
    {"heuristicMask", true},
    {"allowFreeSize", true},
    {"premultiplyAlpha", true},
    {"reduceBorderArtifacts", true},
    {"innerPadding", 4u},
    {"shapePadding", 5u},
    {"borderPadding", 6u},
    {"forcedTextureSize", QSize(640, -1)},
    {"maxTextureSize", QSize(1024, 512)},
    {"outputFormat", "RGB565"},
    {"ditherType", "Atkinson"},
    {"scaleMode", "eagle"},
    {"basic-sort-by", "width"},
    {"basic-order", "descending"},
    {"maxrects-heuristics", "area"},
    {"textureFormat", "png"},
    {"fileList", QStringList{"sprites", "/abs/x.png"}},
    {"ignoreFilesList", QStringList{"*.tmp"}},
    {"replaceList", twoTexts},
};

} // namespace

TEST_F(LegacyProject, everyKeyReachesItsProperty) {
    const struct {
        const char* key;
        QVariant value;
        const char* path;
        const char* result;
        const char* byDefault;
    } rows[] = {
        {"andengine-magfilter", "nearest", "andEngine.magFilterName", "MagNearest", "MagLinear"},
        {"libGdxFilteringX", "MipMapLinearLinear", "libGdx.filtering.xName", "MipMapLinearLinear", "Linear"},
        {"libGdxFilteringY", "Nearest", "libGdx.filtering.yName", "Nearest", "Linear"},
        {"andengine-wrapt", "repeat", "andEngine.wrap.tName", "Repeat", "Clamp"},
        {"andengine-wraps", "repeat", "andEngine.wrap.sName", "Repeat", "Clamp"},
        {"flipPVR", true, "flipPVR", "true", "false"},
        {"autoAliasEnabled", false, "autoAliasEnabled", "false", "true"},
        {"algorithm", "Basic", "algorithmSettings.algorithmName", "Basic", "MaxRects"},
        {"dataFormat", "css", "dataFormat", "css", "cocos2d"},
        {"dataFileName", "../d.plist", "dataFileName", "/base/d.plist", ""},
        {"andengine-java", "A.java", "andEngine.javaFileName", "/base/game/A.java", ""},
        {"textureFileName", "./a//T.PNG", "textureFileName", "/base/game/a/T.PNG", ""},
        {"trimSpriteNames", true, "trimSpriteNames", "true", "false"},
        {"allowRotation", false, "allowRotation", "false", "true"},
        {"backgroundColor", 0xff00ff00u, "backgroundColor", "4278255360", "0"},
        {"shapeDebug", true, "shapeDebug", "true", "false"},
        {"scale", 0.1f, "globalSpriteSettings.scale", "0.10000000149011612", "1"},
        {"scale", 0.1, "globalSpriteSettings.scale", "0.10000000149011612", "1"},
        {"dpi", 300, "dpi", "300", "72"},
        {"jpgQuality", 100, "jpgQuality", "100", "80"},
        {"jpgQuality", -1, "jpgQuality", "80", "80"},
        {"extrude", 7u, "globalSpriteSettings.extrude", "7", "0"},
        {"andengine-packagename", "", "andEngine.packageName", "", "Texture"},
        {"trim", false, "globalSpriteSettings.trimModeName", "None", "Trim"},
        {"crop", true, "globalSpriteSettings.trimModeName", "CropKeepPos", "Trim"},
        {"trimThreshold", 20u, "globalSpriteSettings.trimThreshold", "20", "1"},
        {"textureSubPath", QString::fromUtf8("sprites/\u00e4"), "textureSubPath", "sprites/\u00e4", ""},
        {"heuristicMask", true, "globalSpriteSettings.heuristicMask", "true", "false"},
        {"allowFreeSize", true, "algorithmSettings.sizeConstraintsName", "AnySize", "POT"},
        {"premultiplyAlpha", true, "premultiplyAlpha", "true", "false"},
        {"reduceBorderArtifacts", true, "reduceBorderArtifacts", "true", "false"},
        {"innerPadding", 3u, "globalSpriteSettings.innerPadding", "3", "0"},
        {"shapePadding", 0u, "shapePadding", "0", "2"},
        {"borderPadding", 0u, "borderPadding", "0", "2"},
        {"forcedTextureSize", QSize(256, 128), "fixedTextureSize", "256x128", "-1x-1"},
        {"maxTextureSize", QSize(4096, 1024), "maxTextureSize", "4096x1024", "2048x2048"},
        {"textureFormat", "jpg", "textureFormatName", "png", "png"},
        {"fileList", QStringList({"s/../x.png", "/abs"}), "fileList", "/base/game/x.png|/abs", ""},
        {"ignoreFilesList", QStringList({"*.a", "b"}), "ignoreFileList", "*.a|b", ""},
        {"replaceList", twoTexts, "replaceList", "a=b|c", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(loaded(row.path, row.key, row.value), QString::fromUtf8(row.result)) << row.key;
        EXPECT_EQ(loaded(row.path, row.key, QVariant()), QString::fromUtf8(row.byDefault)) << row.key;
        EXPECT_EQ(loaded(row.path, row.key, QVariant(row.value.type())), QString::fromUtf8(row.byDefault))
            << row.key << ", null of its type";
    }
    EXPECT_EQ(outcome("allowRotation", "0"), outcome("allowRotation", false)) << "values convert";
    EXPECT_EQ(outcome("unknown", 5), outcome(projectBytes({})));
}

TEST_F(LegacyProject, words) {
    const struct {
        const char* key;
        const char* path;
        QStringList words; ///< in the order of the numbers
        int unknown;       ///< the number that an unknown word leaves, -1 if it is refused
    } rows[] = {
        {"outputFormat",
         "outputFormat",
         {"RGBA8888", "BGRA8888", "RGBA4444", "RGB888", "RGB565", "RGBA5551", "RGBA5555", "PVRTC2", "PVRTC4",
          "PVRTC2 (no alpha)", "PVRTC4 (no alpha)", "Alpha", "Alpha+Intensity"},
         -1},
        {"ditherType",
         "ditherType",
         {"NearestNeighbour", "Linear", "FloydSteinberg", "FloydSteinberg+Alpha", "Atkinson",
          "Atkinson+Alpha"},
         -1},
        {"scaleMode",
         "globalSpriteSettings.scaleMode",
         {"smooth", "fast", "scale2x", "scale3x", "scale4x", "eagle", "hq2x"},
         0},
        {"basic-sort-by",
         "algorithmSettings.basic.sortBy",
         {"best", "name", "width", "height", "area", "circumference"},
         0},
        {"basic-order", "algorithmSettings.basic.order", {"ascending", "descending"}, 0},
        {"maxrects-heuristics",
         "algorithmSettings.maxRects.heuristic",
         {"best", "shortSide", "longSide", "area", "bottomLeft", "contactPoint"},
         0},
        {"andengine-minfilter",
         "andEngine.minFilter",
         {"nearest", "linear", "linear_mipmap_linear", "linear_mipmap_nearest", "nearest_mipmap_linear",
          "nearest_mipmap_nearest"},
         1},
        {"andengine-magfilter", "andEngine.magFilter", {"nearest", "linear"}, 1},
        {"andengine-wraps", "andEngine.wrap.s", {"clamp", "repeat"}, 0},
    };
    for (const auto& row : rows) {
        for (int i = 0; i < row.words.size(); ++i)
            EXPECT_EQ(loadedValue(row.path, row.key, row.words[i]).toInt(), i) << row.words[i].toStdString();
        if (row.unknown >= 0) {
            EXPECT_EQ(loadedValue(row.path, row.key, "Smooth").toInt(), row.unknown) << row.key;
        }
    }
    EXPECT_EQ(outcome("outputFormat", "ETC1"), QStringLiteral("16 Unknown output format: ETC1"));
    EXPECT_EQ(outcome("outputFormat", ""), QStringLiteral("16 Unknown output format: "));
    EXPECT_EQ(outcome("ditherType", "AtkinsonAlpha"), QStringLiteral("17 Unknown ditherType: AtkinsonAlpha"));
    EXPECT_EQ(outcome("algorithm", "basic"),
              QStringLiteral("18 Unknown algorithm: basic\nAvailable algorithms: MaxRects, Basic"));
    EXPECT_EQ(outcome("dataFormat", "nix"),
              QStringLiteral("19 Unknown format: nix\nAvailable formats: cocos2d, css"));
    EXPECT_EQ(
        outcome("libGdxFilteringY", "linear"),
        QStringLiteral("55 linear is not element of enum Filtering. Possible values are Nearest, Linear, "
                       "MipMap, MipMapNearestNearest, MipMapLinearNearest, MipMapNearestLinear, "
                       "MipMapLinearLinear"));
}

TEST_F(LegacyProject, namesOfFiles) {
    const char* const formats[][2] = {{"a.png", "png"},         {"a.Pvr", "pvr2"}, {"a.pvr.gz", "pvr2gz"},
                                      {"a.PVR.CCZ", "pvr2ccz"}, {"a.JPG", "jpg"},  {"", "png"}};
    for (const auto& [name, format] : formats)
        EXPECT_EQ(loaded("textureFormatName", "textureFileName", name), QLatin1String(format)) << name;
    for (const char* name : {"a.tga", "a.gz", "png", "."})
        EXPECT_EQ(outcome("textureFileName", name),
                  QStringLiteral("20 Texture file format not supported. Supported formats are .png .jpg .pvr "
                                 ".pvr.ccz .pvr.gz"))
            << name;
    EXPECT_EQ(outcome("andengine-java", "A.JAVA"), QStringLiteral("20 Java file name must end with .java"));
    EXPECT_EQ(loaded("fileList", "fileList", QStringList{QString(), "b/"}), "/base/game|/base/game/b");
}

TEST_F(LegacyProject, halfSizeVariant) {
    const char* const rows[][3] = {{"a-hd.png", "-hd.", "."}, {"a-ipadhd.png", "-ipadhd.", "-ipad."},
                                   {"a@2x.png", "@2x.", "."}, {"a2x.png", "2x.", "."},
                                   {"a-HD.png", "2x.", "."},  {"a-ipadhd.-hd.png", "-hd.", "."}};
    for (const auto& [texture, mainExtension, extension] : rows) {
        const auto settings =
            parseLegacyProject(projectBytes({{"autoSD", true}, {"textureFileName", texture}}), projectName);
        EXPECT_EQ(settings->mainExtension(), QLatin1String(mainExtension)) << texture;
        ASSERT_EQ(settings->autoSDSettings().size(), 1);
        const AutoSDSettings* variant = settings->autoSDSettings().first();
        EXPECT_EQ(variant->extension(), QLatin1String(extension)) << texture;
        EXPECT_EQ(variant->scale(), 0.5);
        EXPECT_EQ(variant->maxTextureSize(), QSize(2048, 2048));
    }
    EXPECT_EQ(loaded("mainExtension", "textureFileName", "a-hd.png"), QString());
}

TEST_F(LegacyProject, limitsOfTheDataFormatHold) {
    const auto settings =
        parseLegacyProject(projectBytes({{"dataFormat", "css"}, {"allowRotation", true}}), projectName);
    EXPECT_FALSE(settings->allowRotation());
    EXPECT_EQ(settings->globalSpriteSettings()->trimMode(), SpriteSettings::TrimMode::None);
}

TEST_F(LegacyProject, versions) {
    const QString refused = QStringLiteral("22 Can't open file /base/game/project.svs for reading:\nFile was "
                                           "created with incompatible Sorvane Version %1\nPlease check "
                                           "https://www.sorvane.example for an update!");
    const QByteArray values = streamed(QHash<QString, QVariant>{{"dpi", 99}});
    const QString accepted = outcome(projectBytes({{"dpi", 99}}));
    EXPECT_TRUE(accepted.contains(QStringLiteral("<uint>99</uint>")));
    const auto version = [&](qint32 major, qint32 minor, qint32 third) {
        return outcome(headerBytes({"Sorvane", "2.0 %2", major, minor, third}) + values);
    };
    EXPECT_EQ(version(1, 0, 0), accepted);
    EXPECT_EQ(version(1, -1, 1 << 30), accepted);
    EXPECT_EQ(version(1, 1, 0), refused.arg(QStringLiteral("2.0 %2")));
    EXPECT_EQ(version(2, 0, 0), refused.arg(QStringLiteral("2.0 %2")));
    EXPECT_EQ(version(0, 0, 0), refused.arg(QStringLiteral("2.0 %2")));
    EXPECT_EQ(outcome(headerBytes({"sorvane", "", 1, 0, 0}) + values), "22 File format error");
    EXPECT_EQ(outcome("Sorvane is text"), "22 File format error");
}

TEST_F(LegacyProject, aStreamCutAnywhereGivesAnErrorOrTheDefaults) {
    const QByteArray bytes = projectBytes(fullProject);
    const QString whole = outcome(bytes);
    const QString defaults = outcome(projectBytes({}));
    ASSERT_TRUE(whole.contains(QStringLiteral("<string>@2x.</string>")));
    EXPECT_EQ(outcome(bytes + "behind the values"), whole);
    const int magicEnd = streamed(QStringLiteral("Sorvane")).size();
    const int majorEnd = magicEnd + streamed(QStringLiteral("1.2.3")).size() + 4;
    for (int length = 0; length < bytes.size(); ++length) {
        const QString cut = outcome(bytes.left(length));
        if (length < magicEnd) {
            EXPECT_EQ(cut, "22 File format error") << length;
        } else if (length < majorEnd) {
            EXPECT_TRUE(cut.startsWith(QStringLiteral("22 Can't open file"))) << length;
        } else {
            EXPECT_EQ(cut, defaults) << length;
        }
    }
}

TEST_F(LegacyProject, whatIsNotOfTheFormatEndsInTheDefaults) {
    const QString defaults = outcome(projectBytes({}));
    const QByteArray dpi = streamed(QStringLiteral("dpi")) + streamed(QVariant(99));
    EXPECT_NE(outcome(headerBytes() + streamed(quint32(1)) + dpi), defaults);
    EXPECT_EQ(outcome(headerBytes() + streamed(quint32(0xffffffff)) + dpi), defaults) << "count of entries";
    const QByteArray hostile[] = {
        hex("0000000a 00 fffffffe"),                   // a text longer than an address
        hex("0000000a 00 7ffffffe 0041"),              // one longer than the stream
        hex("0000000a 00 00000003 004142"),            // half a character
        hex("0000000b 00 ffffffff 00000000"),          // a list of as many texts as can be counted
        hex("0000000b 00 00000002 00000000 00000008"), // a list whose last text is missing
        hex("0000007f 00 00000009") + QByteArray("QVariant\0", 9) + streamed(QVariant(1)), // a named type
        hex("0000008a 00") + streamed(QVariant(1)),       // a value in a value
        hex("00000009 00 00000001 00000009 00 00000001"), // lists in lists
        streamed(QVariant(QVariantMap{{"a", 1}})),
        streamed(QVariant(QByteArray("bytes"))),
        hex("00000040 00 00000000"), // a font
        hex("ffffffff 00 00000000"),
        hex("00000087 00 3f800000"), // a float of four bytes
    };
    for (const QByteArray& value : hostile) {
        EXPECT_EQ(outcome(rawValue("fileList", value)), defaults) << value.toHex().constData();
        EXPECT_EQ(outcome(rawValue("unknown", value)), defaults) << value.toHex().constData();
    }
    const QByteArray manyTexts = hex("0000000b 00 00020001") + QByteArray(4 * 0x20001, '\0');
    EXPECT_EQ(outcome(rawValue("ignoreFilesList", manyTexts)), "22 File format error");
    EXPECT_EQ(outcome(rawValue("dpi", hex("00000002 01 00000063"))), defaults) << "null in spite of a value";
}

TEST_F(LegacyProject, loadsThroughSettings) {
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("old.svs"));
    const QByteArray bytes = projectBytes(fullProject);
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
    file.close();
    const std::unique_ptr<Settings> settings(Settings::load(name));
    EXPECT_EQ(settings->fileName(), name);
    EXPECT_EQ(settings->fileFormatVersion(), 0);
    EXPECT_FALSE(settings->isDirty());
    EXPECT_EQ(settings->dataFileName().path(), folder.filePath(QStringLiteral("out/data.css")));
    EXPECT_EQ(settings->globalSpriteSettings()->trimMode(), SpriteSettings::TrimMode::CropKeepPos);
    EXPECT_EQ(settings->algorithmSettings()->sizeConstraints(), AlgorithmSettings::SizeConstraints::AnySize);
    const std::unique_ptr<Settings> again(Settings::load(name));
    EXPECT_EQ(again->toXml(), settings->toXml());

    settings->save(name);
    const std::unique_ptr<Settings> saved(Settings::load(name));
    EXPECT_EQ(saved->fileFormatVersion(), 1);
    again->setFileFormatVersion(1);
    EXPECT_EQ(saved->toXml(), again->toXml());

    try {
        readLegacyProject(folder.filePath(QStringLiteral("none.svs")));
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), 22);
        EXPECT_EQ(error.message(), QStringLiteral("Can't open file %1 for reading:\n")
                                       .arg(folder.filePath(QStringLiteral("none.svs"))));
    }
}
