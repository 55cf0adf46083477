#include "OptionParser.h"

#include "DataExporterRegistry.h"
#include "EndOfRun.h"
#include "Error.h"
#include "HelpText.h"
#include "OptionTable.h"
#include "Settings.h"

#include <QSet>

#include <gtest/gtest.h>

namespace {

/// Settings and what else the options of a run left behind.
struct Parsed {
    std::unique_ptr<Settings> settings = std::make_unique<Settings>();
    QStringList warnings;
    bool forcePublish = false;
};

Parsed parse(const QStringList& arguments) {
    DataFormats::setInstance(&DataExporterRegistry::instance());
    Parsed parsed;
    OptionContext context{*parsed.settings, [&parsed](const QString& text) { parsed.warnings.append(text); }};
    parseOptions(context, arguments);
    parsed.forcePublish = context.forcePublish;
    return parsed;
}

Parsed parse(const char* line) {
    return parse(QString::fromUtf8(line).split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

/// The error of parsing, "code text".
QString errorOf(const QStringList& arguments) {
    testing::internal::CaptureStdout();
    QString text = QStringLiteral("no error");
    try {
        parse(arguments);
    } catch (const Error& error) {
        text = QStringLiteral("%1 %2").arg(error.code()).arg(error.message());
    }
    testing::internal::GetCapturedStdout();
    return text;
}

QString errorOf(const char* line) {
    return errorOf(QString::fromUtf8(line).split(QLatin1Char(' '), Qt::SkipEmptyParts));
}

QString u(const char* text) { return QString::fromUtf8(text); }

} // namespace

TEST(OptionParser, orderOnTheCommandLineDoesNotMatter) {
    for (const char* line : {"--shape-padding 0 --padding 5", "--padding 5 --shape-padding 0"}) {
        const Parsed parsed = parse(line);
        EXPECT_EQ(parsed.settings->shapePadding(), 0u);
        EXPECT_EQ(parsed.settings->borderPadding(), 5u);
    }
    using TrimMode = SpriteSettings::TrimMode;
    EXPECT_EQ(parse("--crop --trim --no-trim").settings->globalSpriteSettings()->trimMode(),
              TrimMode::CropKeepPos);
    EXPECT_EQ(parse("--trim-mode Crop --no-trim").settings->globalSpriteSettings()->trimMode(),
              TrimMode::Crop);
    EXPECT_TRUE(parse("--enable-rotation --disable-rotation").settings->allowRotation());
    // A format's limits come first, whatever stands in front of it.
    const Parsed formats = parse("--enable-rotation --trim-mode Crop --format cocos2d-original");
    EXPECT_TRUE(formats.settings->allowRotation());
    EXPECT_EQ(formats.settings->globalSpriteSettings()->trimMode(), TrimMode::Crop);
    EXPECT_FALSE(parse("--format cocos2d-original").settings->allowRotation());
}

TEST(OptionParser, wordsAndStoredNames) {
    EXPECT_EQ(parse("--scale-mode hq2x").settings->globalSpriteSettings()->scaleMode(), ScaleMode::Hq2x);
    EXPECT_EQ(parse("--scale-mode Scale3x").settings->globalSpriteSettings()->scaleMode(),
              ScaleMode::Scale3x);
    EXPECT_TRUE(
        errorOf("--scale-mode scale3x").startsWith(u("55 scale3x is not element of enum ScaleMode.")));
    using Format = SettingsBase::OutputFormat;
    EXPECT_EQ(parse({u("--opt"), u("PVRTC4 (no alpha)")}).settings->outputFormat(), Format::PVRTC4_NOALPHA);
    EXPECT_EQ(parse("--opt PVRTC4_NOALPHA").settings->outputFormat(), Format::PVRTC4_NOALPHA);
    EXPECT_EQ(
        parse("--maxrects-heuristics contactPoint").settings->algorithmSettings()->maxRects()->heuristic(),
        AlgorithmMaxRectsSettings::Heuristic::ContactPoint);
    EXPECT_EQ(parse("--andengine-magfilter nearest").settings->andEngine()->magFilter(),
              AndEngine::MagFilter::MagNearest);
    EXPECT_EQ(
        parse("--algorithm Basic --basic-sort-by area").settings->algorithmSettings()->basic()->sortBy(),
        AlgorithmBasicSettings::SortBy::Area);
}

TEST(OptionParser, values) {
    const Parsed parsed =
        parse("--width 100 --max-size 512 --max-width 1024 --scale 0.3 --jpg-quality -1 "
              "--background-color 0aF010 --ignore-files *a --replace x=y --ignore-files *b "
              "--texturepath img --force-publish --dpi 300 a.png b --trim-threshold -1 a.png");
    const Settings& settings = *parsed.settings;
    EXPECT_EQ(settings.fixedTextureSize(), QSize(100, -1));
    EXPECT_EQ(settings.maxTextureSize(), QSize(512, 512)) << "both sides stand later in the table";
    EXPECT_EQ(settings.globalSpriteSettings()->scale(), double(0.3f));
    EXPECT_EQ(settings.jpgQuality(), uint(-1));
    EXPECT_EQ(settings.backgroundColor(), 0xff0af010u);
    EXPECT_EQ(settings.ignoreFileList(), (QStringList{u("*a"), u("*b")}));
    EXPECT_EQ(settings.replaceList(), QStringList{u("x=y")});
    EXPECT_EQ(settings.fileList(), (GFileNameList{u("a.png"), u("b")}));
    EXPECT_TRUE(parsed.forcePublish);
    const Parsed plist = parse("--plist a.plist");
    EXPECT_EQ(plist.settings->dataFileName().path(), u("a.plist"));
    EXPECT_EQ(plist.warnings,
              QStringList{u("\"--plist\" is deprecated. Please use \"--data <filename> --format "
                            "cocos2d\" instead.")});
}

TEST(OptionParser, textureFormatFollowsTheSheet) {
    using Format = SettingsBase::TextureFormat;
    const std::pair<const char*, Format> cases[] = {
        {"a.PNG", Format::png},       {"a.pvr", Format::pvr2}, {"a.pvr.ccz", Format::pvr2ccz},
        {"a.pvr.gz", Format::pvr2gz}, {"a.jpeg", Format::jpg}, {"a.tiff", Format::tiff},
        {"a.tga", Format::tga},       {"a.bmp", Format::bmp},  {"a.pkm", Format::pkm}};
    for (const auto& [sheet, format] : cases)
        EXPECT_EQ(parse({u("--sheet"), u(sheet)}).settings->textureFormat(), format) << sheet;
    EXPECT_EQ(parse("--sheet a.pkm").settings->outputFormat(), SettingsBase::OutputFormat::ETC1);
    EXPECT_EQ(parse("--sheet a.pvr --texture-format tga").settings->textureFormat(), Format::tga);
    EXPECT_EQ(errorOf("--sheet a.pkm --opt RGB565"),
              u("36 pkm output format is only supported with ETC1 compression"));
    EXPECT_EQ(errorOf("--sheet a.ppm"),
              u("36 Can't derive ppm internal format. Please use --texture-format (ppm_ascii|ppm_binary)"));
}

TEST(OptionParser, errors) {
    const std::pair<const char*, const char*> cases[] = {
        {"--data", "36 Missing value for parameter --data"},
        {"--replace", "36 Missing value for parameter --replace"},
        {"--data a --data b", "36 Parameter --data specified multiple times."},
        {"--width ten", "36 Illegal value for --width: ten, integer required"},
        {"--scale x", "36 Illegal value for --scale: x, float required"},
        {"--width 0", "36 Value for --width must be > 0 "},
        {"--padding -1", "36 Value for --padding must be >= 0 "},
        {"--png-opt-level 8",
         "36 Optimzation levels for --png-opt-level: [0..7] where 0=off, 7=extreme, 2=default"},
        {"--format flat", nullptr},
        {"--background-color ff00", nullptr},
        {"--auto-sd --sheet a.png",
         "11 Texture filename for --auto-sd must end with -hd, -ipadhd, @2x or 2x. Use "
         "--autosd-variant for more options."},
        {"--trim --trim",
         "36 Unknown argument --trim - please check parameters or visit https://www.sorvane.example for "
         "newer version"},
    };
    for (const auto& [line, message] : cases) {
        const QString error = errorOf(line);
        if (message)
            EXPECT_EQ(error, u(message)) << line;
        else
            EXPECT_NE(error, u("no error")) << line;
    }
    EXPECT_TRUE(
        errorOf("--format flat").startsWith(u("19 Unknown format: flat\nAvailable formats: cocos2d, ")));
    EXPECT_TRUE(
        errorOf("--background-color ff00g0").startsWith(u("36 Illegal color value specified.\nUse 3 pairs")));
}

TEST(OptionParser, nearestOption) {
    EXPECT_EQ(nearestOption(u("--trim-mod")), u("--trim-mode"));
    EXPECT_EQ(nearestOption(u("--sheets")), u("--sheet"));
    EXPECT_EQ(nearestOption(u("--data=out.json")), u("--data"));
    EXPECT_EQ(nearestOption(u("--completely-else")), QString());
}

TEST(OptionParser, variants) {
    const auto variant = [](const char* expression) {
        const Parsed parsed = parse({u("--autosd-variant"), u(expression)});
        const AutoSDSettings& first = *parsed.settings->autoSDSettings().first();
        return QStringLiteral("%1 %2 %3 %4x%5")
            .arg(first.scale())
            .arg(first.extension())
            .arg(first.acceptFractionalValues())
            .arg(first.maxTextureSize().width())
            .arg(first.maxTextureSize().height());
    };
    EXPECT_EQ(variant("0.5:-sd"), u("0.5 -sd 0 2048x2048"));
    EXPECT_EQ(variant("0.5:-sd:allowfraction:1024"), u("0.5 -sd 1 1024x1024"));
    EXPECT_EQ(variant("0.5::1024:512"), u("0.5  0 1024x512"));
    const std::pair<const char*, const char*> errors[] = {
        {"0.5", "36 --autosd-variant: Value must contain at least <scale>:<extenstion>, is: 0.5"},
        {"x:a", "36 --autosd-variant: First value must be a floating point value (scale), is: x"},
        {"11:a", "36 --autosd-variant: scale must be between 0.01 and 10.0, is: 11"},
        {"nan:a", "36 --autosd-variant: scale must be between 0.01 and 10.0, is: nan"},
        {"0.5:a:x", "36 --autosd-variant: argument (width/size) must be integer, is: x"},
        {"0.5:a:0", "36 --autosd-variant: argument (width/size) at least be 1, is: 0"},
        {"0.5:a:9:y", "36 --autosd-variant: argument (height) must be integer, is: y"},
        {"0.5:a:9:0", "36 --autosd-variant: argument (height) at least be 1, is: 0"},
        {"0.5:a:9:9:9",
         "36 --autosd-variant: Value must be <scale>:<extenstion>[:allowfraction][:<width>[:<height>]], "
         "is: 0.5:a:9:9:9"}};
    for (const auto& [expression, message] : errors)
        EXPECT_EQ(errorOf({u("--autosd-variant"), u(expression)}), u(message));

    const std::pair<const char*, const char*> sheets[] = {{"a-hd.png", "-hd. ."},
                                                          {"a-ipadhd.png", "-ipadhd. -ipad."},
                                                          {"a@2x.png", "@2x. ."},
                                                          {"a2x.png", "2x. ."}};
    for (const auto& [sheet, extensions] : sheets) {
        const Parsed parsed = parse({u("--auto-sd"), u("--sheet"), u(sheet)});
        const Settings& settings = *parsed.settings;
        EXPECT_EQ(settings.mainExtension() + u(" ") + settings.autoSDSettings().first()->extension(),
                  u(extensions));
    }
}

TEST(Help, everyRowIsThereOnce) {
    QSet<QString> names;
    const QString text = helpText();
    for (const Option& option : optionTable()) {
        EXPECT_FALSE(names.contains(option.name)) << qPrintable(option.name);
        names.insert(option.name);
        const QString line = QLatin1Char('\n') + QString(option.help.indent, QLatin1Char(' ')) + option.name;
        const int count = text.count(line + QLatin1Char(' '));
        EXPECT_EQ(count, option.help.section == OptionSection::Hidden ? 0 : 1) << qPrintable(option.name);
    }
}

TEST(Help, linesAsBuildScriptsKnowThem) {
    const QString text = helpText();
    for (const char* line :
         {"Sorvane - 3.0.8\n", "\n  --help                      Display help text\n",
          "\n      --maxrects-heuristics   Heuristic for MaxRects algorithm\n",
          "\n                                         POT - Power of 2 (2,4,8,16,32,...)\n",
          "\n  --replace <regexp>=<string> Replaces matching parts of the sprite's name with <string>\n",
          "\n  --andengine-wraps <Clamp|Repeat>     Texture wrapping parameter (see opengl/andengine "
          "documentation)\n",
          "\n  --andengine-java <filename>          File name for the java definitions\n",
          "\n  --png-opt-level <value>     Optimization level for optipng based compressing (0=off, "
          "7=extreme), default "
          "is 2\n                              on sprites which use one unique color as transparent color.\n",
          "\n                                     png       Portable Network Graphics\n"})
        EXPECT_TRUE(text.contains(u(line))) << line;
    try {
        parse("--version");
        FAIL();
    } catch (const EndOfRun& end) {
        EXPECT_EQ(end.output, u("Sorvane 3.0.8\n"));
    }
    EXPECT_THROW(parse("--width 0 --help"), Error) << "an option before it in the table fails first";
}
