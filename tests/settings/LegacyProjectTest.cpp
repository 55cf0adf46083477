#include "LegacyProjectTest.h"

namespace {

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
