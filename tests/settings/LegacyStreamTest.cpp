#include "LegacyProjectTest.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

/// A project of one entry whose value is these bytes.
QByteArray rawValue(const char* key, const QByteArray& value) {
    return headerBytes() + streamed(quint32(1)) + streamed(QString::fromLatin1(key)) + value;
}

QByteArray hex(const char* digits) { return QByteArray::fromHex(digits); }

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
    {"replaceList", QStringList{"a=b", "c"}},
};

} // namespace

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
