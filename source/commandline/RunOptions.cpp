#include "OptionRows.h"

#include "AutoSDOption.h"
#include "EndOfRun.h"
#include "Error.h"
#include "HelpText.h"
#include "Settings.h"

#include <QColor>
#include <QRegularExpression>

using namespace optionRows;

namespace {

using Section = OptionSection;
using Wrap = AndEngineWrap::Wrap;
using MinFilter = AndEngine::MinFilter;
using MagFilter = AndEngine::MagFilter;

constexpr std::initializer_list<std::pair<const char*, Wrap>> wrapWords = {{"clamp", Wrap::Clamp},
                                                                           {"repeat", Wrap::Repeat}};

OptionHelp wrapHelp(int rank) {
    return {Section::AndEngine, rank, QStringLiteral("<%1>").arg(enumNames<Wrap>("|")),
            lines({"Texture wrapping parameter (see opengl/andengine documentation)"})};
}

std::vector<Option> andEngineOptions() {
    return {
        string("--andengine-java",
               [](OptionContext& c, const QString& name) { c.settings.andEngine()->setJavaFileName(name); },
               {Section::AndEngine, 1, text("<filename>"), lines({"File name for the java definitions"})}),
        string("--andengine-packagename",
               [](OptionContext& c, const QString& name) { c.settings.andEngine()->setPackageName(name); },
               {Section::AndEngine, 2, text("<name>"), lines({"Package name for the java definitions"})}),
        string(
            "--andengine-wraps",
            [](OptionContext& c, const QString& word) {
                choose(c.settings.andEngine()->wrap(), word, wrapWords, &AndEngineWrap::setS,
                       &AndEngineWrap::setSName);
            },
            wrapHelp(3)),
        string(
            "--andengine-wrapt",
            [](OptionContext& c, const QString& word) {
                choose(c.settings.andEngine()->wrap(), word, wrapWords, &AndEngineWrap::setT,
                       &AndEngineWrap::setTName);
            },
            wrapHelp(4)),
        string("--andengine-minfilter",
               [](OptionContext& c, const QString& word) {
                   choose(c.settings.andEngine(), word,
                          Words<MinFilter>{{"nearest", MinFilter::Nearest},
                                           {"linear", MinFilter::Linear},
                                           {"linear_mipmap_linear", MinFilter::LinearMipmapLinear},
                                           {"linear_mipmap_nearest", MinFilter::LinearMipmapNearest},
                                           {"nearest_mipmap_linear", MinFilter::NearestMipmapLinear},
                                           {"nearest_mipmap_nearest", MinFilter::NearestMipmapNearest}},
                          &AndEngine::setMinFilter, &AndEngine::setMinFilterName);
               },
               {Section::AndEngine,
                5,
                text("<name>"),
                {QStringLiteral("Min filter (%1)").arg(enumNames<MinFilter>(", "))}}),
        string("--andengine-magfilter",
               [](OptionContext& c, const QString& word) {
                   choose(
                       c.settings.andEngine(), word,
                       Words<MagFilter>{{"nearest", MagFilter::MagNearest}, {"linear", MagFilter::MagLinear}},
                       &AndEngine::setMagFilter, &AndEngine::setMagFilterName);
               },
               {Section::AndEngine,
                6,
                text("<name>"),
                {QStringLiteral("Mag filter (%1)").arg(enumNames<MagFilter>(", "))}}),
    };
}

void applyBackgroundColor(OptionContext& context, const QString& value) {
    static const QRegularExpression notHex(QStringLiteral("[^A-Fa-f0-9]"));
    if (value.size() != 6 || value.contains(notHex))
        throw Error(
            Error::CommandLine,
            text("Illegal color value specified.\n"
                 "Use 3 pairs of hexadecimal digits (0-9, a-f), each pair represents a color channel\n"
                 "in the order red, green, blue. E.g. ff0000 = red, ffffff = white, 000000 = black"));
    const auto channel = [&value](int pair) { return value.midRef(2 * pair, 2).toInt(nullptr, 16); };
    context.settings.setBackgroundColor(qRgb(channel(0), channel(1), channel(2)));
}

std::vector<Option> sheetOptions() {
    return {
        flag("--reduce-border-artifacts", [](OptionContext& c) { c.settings.setReduceBorderArtifacts(true); },
             {Section::Additional, 2, {}, lines({"Removes dark shadows around sprites"})}),
        string("--background-color", applyBackgroundColor,
               {Section::Graphics, 8, text("<rrggbb>"),
                lines({"Set solid background color, default is none which is transparent",
                       "The value is a tuple of 3 hexadezimal digit pairs, each pair represents",
                       "a color channel in order red, green, blue, E.g. ff0000 for red, ffffff for white"})}),
        flag("--auto-sd", [](OptionContext& c) { addHalfSizeVariant(c.settings); },
             {Section::Output,
              6,
              {},
              lines({"Automatically creates additional standard definition file (50% scale)",
                     "Requires data and texture file name to end with @2x or -hd", "e.g. sheet-hd.plist "})}),
        string("--texture-format",
               [](OptionContext& c, const QString& word) {
                   c.settings.setTextureFormatName(word);
                   c.textureFormatGiven = true;
               },
               {Section::Output,
                2,
                text("<id>"),
                lines({"Sets the format for the textures.",
                       "The format type is automatically derived from the sheet's file name", "if possible.",
                       "Available formats:"}),
                {},
                enumList<SettingsBase::TextureFormat>}),
    };
}

void applyPlist(OptionContext& context, const QString& name) {
    context.warn(
        text("\"--plist\" is deprecated. Please use \"--data <filename> --format cocos2d\" instead."));
    context.settings.setDataFormatChecked(text("cocos2d"));
    context.settings.setDataFileName(name);
}

std::vector<Option> processOptions() {
    const auto nothing = [](OptionContext&) {};
    return {
        // Asked for when the application object is made, before any option is parsed.
        flag("--enable-swf-import", nothing,
             {Section::Additional, 1, {}, lines({"Enables import of Flash movies (.swf files)"})}),
        // Always on; accepted from older build scripts.
        flag("--smart-update", nothing),
        flag("--help", [](OptionContext&) { throw EndOfRun{helpText()}; },
             {Section::Options, 1, {}, lines({"Display help text"})}),
        flag("--version", [](OptionContext&) { throw EndOfRun{versionText()}; },
             {Section::Options, 2, {}, lines({"Print version information"})}),
        // Taken out of the arguments before they are parsed.
        {text("--gui"),
         OptionKind::Flag,
         OptionRange::Any,
         {},
         {Section::Options, 3, {}, lines({"Launch in with graphical user interface"})}},
        string("--plist", applyPlist),
        flag("--verbose", [](OptionContext& c) { c.settings.setVerbose(true); },
             {Section::Debugging, 2, {}, lines({"Be verbose"})}),
        flag("--force-publish", [](OptionContext& c) { c.forcePublish = true; },
             {Section::Output,
              5,
              {},
              lines({"Ignore smart update hash and force re-publishing of the files"})}),
    };
}

} // namespace

std::vector<Option> runOptions() { return joined({andEngineOptions, sheetOptions, processOptions}); }
