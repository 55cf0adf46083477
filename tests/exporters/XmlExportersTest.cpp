#include "DataSheet.h"
#include "Error.h"
#include "OutsideReader.h"
#include "product.h"

#include <QDir>

namespace {

QByteArray withAddress(const char* text) { return QByteArray(text).replace("HOME", product::homePage); }

const QByteArray generic = withAddress(R"xml(<?xml version="1.0" encoding="UTF-8"?>
<!-- Created with Sorvane HOME-->
<!-- $token$ -->
<!--Format:
n  => name of the sprite
x  => sprite x pos in texture
y  => sprite y pos in texture
w  => sprite width (may be trimmed)
h  => sprite height (may be trimmed)
oX => sprite's x-corner offset (only available if trimmed)
oY => sprite's y-corner offset (only available if trimmed)
oW => sprite's original width (only available if trimmed)
oH => sprite's original height (only available if trimmed)
r => 'y' only set if sprite is rotated
-->
<TextureAtlas imagePath="sheet.png" width="128" height="64">
    <sprite n="Turn.png" x="60" y="3" w="10" h="20" r="y"/>
    <sprite n="Zwölf.png" x="2" y="3" w="32" h="32" oX="0" oY="1" oW="40" oH="33"/>
    <sprite n="a&quot;b\c.png" x="41" y="4" w="7" h="7" oX="1" oY="2" oW="10" oH="10"/>
    <sprite n="b/hero.png" x="2" y="3" w="32" h="32"/>
</TextureAtlas>
)xml");

const QByteArray sparrow = withAddress(R"xml(<?xml version="1.0" encoding="UTF-8"?>
<!-- Created with Sorvane HOME-->
<!-- $token$ -->
<TextureAtlas imagePath="sheet.png">
    <SubTexture name="Turn" x="60" y="3" width="20" height="10"/>
    <SubTexture name="Zwölf" x="2" y="3" width="32" height="32" frameX="0" frameY="-1" frameWidth="40" frameHeight="33"/>
    <SubTexture name="a&quot;b\c" x="41" y="4" width="7" height="7" frameX="-1" frameY="-2" frameWidth="10" frameHeight="10"/>
    <SubTexture name="b/hero" x="2" y="3" width="32" height="32"/>
</TextureAtlas>
)xml");

const QByteArray cegui = withAddress(R"xml(<?xml version="1.0" encoding="UTF-8"?>
<!-- Created with Sorvane HOME-->
<!-- $token$ -->
<Imageset Name="sheet" Imagefile="sheet.png" NativeHorzRes="128" NativeVertRes="64" AutoScaled="false">
    <Image Name="Turn" XPos="60" YPos="3" Width="20" Height="10"/>
    <Image Name="Zwölf" XPos="2" YPos="3" Width="32" Height="32"/>
    <Image Name="a&quot;b\c" XPos="41" YPos="4" Width="9" Height="9"/>
    <Image Name="b/hero" XPos="2" YPos="3" Width="32" Height="32"/>
</Imageset>
)xml");

const QByteArray andEngine = withAddress(R"xml(<?xml version="1.0" encoding="UTF-8"?>
<texture version="1" file="sheet.png" type="bitmap" width="128" height="64" pixelformat="RGBA_8888" minfilter="linear" magfilter="linear" wrapt="clamp" wraps="clamp" premultiplyalpha="false">
    <!-- Created with Sorvane HOME -->
    <!-- $token$ -->
    <textureregion id="0" src="Turn.png" x="60" y="3" width="20" height="10" rotated="true" trimmed="false" srcx="0" srcy="0" srcwidth="20" srcheight="10"/>
    <textureregion id="1" src="Zwölf.png" x="2" y="3" width="32" height="32" rotated="false" trimmed="true" srcx="0" srcy="1" srcwidth="40" srcheight="33"/>
    <textureregion id="2" src="a&quot;b\c.png" x="41" y="4" width="7" height="7" rotated="false" trimmed="true" srcx="1" srcy="2" srcwidth="10" srcheight="10"/>
    <textureregion id="3" src="b/hero.png" x="2" y="3" width="32" height="32" rotated="false" trimmed="false" srcx="0" srcy="0" srcwidth="32" srcheight="32"/>
</texture>
)xml");

const QByteArray java = R"java(// Definitions for sprite sheet sheet
// Created with www.sorvane.example

// $token$

package Texture;

public interface Sheet
{
	public static final int TURN_ID = 0;
	public static final int ZW_LF_ID = 1;
	public static final int A_B_C_ID = 2;
	public static final int B_HERO_ID = 3;
}
)java";

/// What xmllint finds in a document.
QString found(const QByteArray& xml, const QString& xpath) {
    const QStringList arguments{QStringLiteral("--nonet"), QStringLiteral("--xpath"), xpath,
                                QStringLiteral("-")};
    return QString::fromUtf8(readOutside("xmllint", arguments, xml)).chopped(1);
}

/// A run of the AndEngine format in a folder of its own, with settings to play with.
class AndEngineTest : public testing::Test {
protected:
    AndEngineTest() {
        settings.setTextureFileName(QStringLiteral("/x/sheet.png"));
        settings.andEngine()->setJavaFileName(path("Sheet.v2.java"));
    }

    QString path(const char* name) const { return folder.filePath(QLatin1String(name)); }

    QByteArray content(const char* name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }

    void write(const PackedTexture& texture) { write(path("data"), texture); }

    void write(const QString& fileName, const PackedTexture& texture) {
        DataExporter* exporter = DataExporterRegistry::instance().find(QStringLiteral("andengine"));
        exporter->setFileName(fileName);
        exporter->setInput(&settings, texture);
        exporter->setSmartUpdateKey(QStringLiteral("$token$"));
        exporter->write();
    }

    void expectFailure(const QString& fileName, int code, const QString& message) {
        try {
            write(fileName, dataSheet());
            FAIL() << message.toStdString();
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), code);
            EXPECT_EQ(error.message().toStdString(), message.toStdString());
        }
        EXPECT_TRUE(QDir(folder.path()).isEmpty()) << message.toStdString();
    }

    QTemporaryDir folder;
    Settings settings;
};

} // namespace

TEST(XmlExporters, writeTheBytesOfTheirFormats) {
    EXPECT_EQ(writtenData("xml").toStdString(), generic.toStdString());
    EXPECT_EQ(writtenData("sparrow").toStdString(), sparrow.toStdString());
    EXPECT_EQ(writtenData("cegui").toStdString(), cegui.toStdString());
    EXPECT_EQ(found(generic, QStringLiteral("string(//sprite[@r='y']/@n)")), QStringLiteral("Turn.png"));
    EXPECT_EQ(found(sparrow, QStringLiteral("string(//SubTexture[3]/@name)")), QStringLiteral("a\"b\\c"));
    EXPECT_EQ(found(cegui, QStringLiteral("sum(//Image/@Width)")), QStringLiteral("93"));
}

TEST(XmlExporters, referToTheBareTextureAndHoldAnEmptyToken) {
    Settings settings;
    settings.setTextureFileName(QStringLiteral("/x/sheet.v2 & \"co\".png"));
    settings.setTextureSubPath(QStringLiteral("img"));
    settings.setTrimSpriteNames(true);
    const QByteArray head = withAddress("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                        "<!-- Created with Sorvane HOME-->\n<!--  -->\n");
    const PackedTexture none = sheetOf({});
    EXPECT_EQ(writtenData("sparrow", settings, none, {}),
              head + "<TextureAtlas imagePath=\"sheet.v2 &amp; &quot;co&quot;.png\"/>\n");
    EXPECT_EQ(writtenData("cegui", settings, none, {}),
              head + "<Imageset Name=\"sheet\" Imagefile=\"sheet.v2 &amp; &quot;co&quot;.png\" "
                     "NativeHorzRes=\"64\" NativeVertRes=\"4\" AutoScaled=\"false\"/>\n");
    const QByteArray xml = writtenData("xml", settings, sheetOf({QStringLiteral("b/a.png")}), {});
    EXPECT_EQ(found(xml, QStringLiteral("string(/TextureAtlas/@imagePath)")),
              QStringLiteral("sheet.v2 & \"co\".png"));
    EXPECT_EQ(found(xml, QStringLiteral("string(//@n)")), QStringLiteral("b/a"));
}

TEST_F(AndEngineTest, keepsOddNamesWholeInEveryXmlFormat) {
    const QString odd = QString::fromUtf8("a&b<c>'d\" \t e\xf0\x9f\xa6\x8a]]>");
    const PackedTexture texture = sheetOf({odd});
    EXPECT_EQ(found(writtenData("xml", settings, texture), QStringLiteral("string(//@n)")), odd);
    EXPECT_EQ(found(writtenData("sparrow", settings, texture), QStringLiteral("string(//@name)")), odd);
    EXPECT_EQ(found(writtenData("cegui", settings, texture), QStringLiteral("string(//Image/@Name)")), odd);
    write(texture);
    EXPECT_EQ(found(content("data"), QStringLiteral("string(//@src)")), odd);
    // The fox lies beyond the basic plane: two code units.
    EXPECT_TRUE(content("Sheet.v2.java").contains("int A_B_C__D____E______ID = 0;"));
    // XML has no way to write this one.
    for (const char* format : {"xml", "sparrow", "cegui", "andengine"})
        EXPECT_THROW(writtenData(format, settings, sheetOf({QStringLiteral("\x01.png")})), Error) << format;
}

TEST_F(AndEngineTest, writesDescriptionAndConstants) {
    settings.setTextureSubPath(QStringLiteral("img"));
    settings.setTrimSpriteNames(true);
    write(dataSheet());
    EXPECT_EQ(content("data").toStdString(), andEngine.toStdString());
    EXPECT_EQ(content("Sheet.v2.java").toStdString(), java.toStdString());
    EXPECT_EQ(found(content("data"), QStringLiteral("string(//textureregion[@id=2]/@src)")),
              QStringLiteral("a\"b\\c.png"));
}

TEST_F(AndEngineTest, namesTheOptionsInTheWordsOfTheFramework) {
    using Output = SettingsBase::OutputFormat;
    struct Row {
        Output format;
        const char* texture;
        const char* words;
    };
    const Row rows[] = {
        {Output::RGBA8888, "s.pvr", "pvr RGBA_8888"},    {Output::RGBA4444, "s.pvr.gz", "pvrgz RGBA_4444"},
        {Output::RGB888, "s.pvr.ccz", "pvrccz RGB_888"}, {Output::RGB565, "s.PVR", "bitmap RGB_565"},
        {Output::ALPHA, "s.pvr.png", "bitmap A_8"},      {Output::ALPHA_INTENSITY, "s", "bitmap AI_8"},
        {Output::ETC1, "s.pkm", "etc1 RGBA_8888"},       {Output::ETC1, "s.pvr", "etc1 RGBA_8888"}};
    for (const Row& row : rows) {
        settings.setOutputFormat(row.format);
        settings.setTextureFileName(QString::fromLatin1(row.texture));
        write(sheetOf({}));
        EXPECT_EQ(found(content("data"), QStringLiteral("concat(/*/@type,' ',/*/@pixelformat)")),
                  QLatin1String(row.words))
            << row.texture;
    }
    AndEngine* options = settings.andEngine();
    options->setMagFilter(AndEngine::MagFilter::MagNearest);
    options->wrap()->setT(AndEngineWrap::Wrap::Repeat);
    options->setPackageName(QStringLiteral("org.x"));
    settings.setPremultiplyAlpha(true);
    const char* const minFilters[] = {"nearest",
                                      "linear",
                                      "linear_mipmap_linear",
                                      "linear_mipmap_nearest",
                                      "nearest_mipmap_linear",
                                      "nearest_mipmap_nearest"};
    for (int i = 0; i < 6; ++i) {
        options->setMinFilter(static_cast<AndEngine::MinFilter>(i));
        write(sheetOf({}));
        EXPECT_TRUE(content("data").contains(QByteArray("minfilter=\"") + minFilters[i] +
                                             "\" magfilter=\"nearest\" wrapt=\"repeat\" wraps=\"clamp\" "
                                             "premultiplyalpha=\"true\""))
            << content("data").toStdString();
    }
    EXPECT_TRUE(content("Sheet.v2.java").contains("\npackage org.x;\n\npublic interface Sheet\n{\n}\n"));
}

TEST_F(AndEngineTest, leavesNoHalfOfThePair) {
    const QString missing = path("missing/Sheet.java");
    settings.andEngine()->setJavaFileName(missing);
    expectFailure(path("data"), 11, QStringLiteral("Failed to write java file %1").arg(missing));
    settings.andEngine()->setJavaFileName(QStringLiteral("/dev/full"));
    expectFailure(path("data"), 11, QStringLiteral("Failed to write java file /dev/full"));
    // A java file in the place of another one.
    const auto refusal = [](const QString& name) {
        return name + QStringLiteral(" would be written twice; give the java definitions a file of their own "
                                     "(--andengine-java)");
    };
    settings.andEngine()->setJavaFileName(path("./data"));
    expectFailure(path("data"), 11, refusal(path("./data")));
    settings.andEngine()->setJavaFileName(QStringLiteral("/x/y/../sheet.png"));
    expectFailure(path("data"), 11, refusal(QStringLiteral("/x/y/../sheet.png")));
    settings.andEngine()->setJavaFileName(path("Sheet.java"));
    expectFailure(QStringLiteral("/dev/full"), 11, QStringLiteral("Failed to write xml file /dev/full"));
    for (const auto format : {SettingsBase::OutputFormat::BGRA8888, SettingsBase::OutputFormat::PVRTC4}) {
        settings.setOutputFormat(format);
        expectFailure(path("data"), 11, QStringLiteral("Can't export in that pixel format for AndEngine"));
    }
    settings.setOutputFormat(SettingsBase::OutputFormat::RGBA8888);
    settings.andEngine()->setJavaFileName(QString());
    expectFailure(
        path("data"), 36,
        QStringLiteral("AndEngine exproter needs a java file name to export definitions. On command line use "
                       "--andengine-java <filename> to set the file name"));
}
