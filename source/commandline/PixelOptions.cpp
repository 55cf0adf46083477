#include "OptionRows.h"

#include "Settings.h"

using namespace optionRows;

namespace {

using Section = OptionSection;
using OutputFormat = SettingsBase::OutputFormat;
using DitherType = SettingsBase::DitherType;

void applyPixelFormat(OptionContext& context, const QString& word) {
    choose(&context.settings, word,
           Words<OutputFormat>{{"RGBA8888", OutputFormat::RGBA8888},
                               {"BGRA8888", OutputFormat::BGRA8888},
                               {"RGBA4444", OutputFormat::RGBA4444},
                               {"RGBA5555", OutputFormat::RGBA5555},
                               {"RGBA5551", OutputFormat::RGBA5551},
                               {"RGB888", OutputFormat::RGB888},
                               {"RGB565", OutputFormat::RGB565},
                               {"PVRTC4", OutputFormat::PVRTC4},
                               {"PVRTC2", OutputFormat::PVRTC2},
                               {"PVRTC4 (no alpha)", OutputFormat::PVRTC4_NOALPHA},
                               {"PVRTC2 (no alpha)", OutputFormat::PVRTC2_NOALPHA},
                               {"Alpha", OutputFormat::ALPHA},
                               {"Alpha+Intensity", OutputFormat::ALPHA_INTENSITY},
                               {"ETC1", OutputFormat::ETC1}},
           &SettingsBase::setOutputFormat, &SettingsBase::setOutputFormatName);
    context.pixelFormatGiven = true;
}

Option pixelFormatFlag(const char* name, OutputFormat format) {
    return flag(name, [format](OptionContext& c) { c.settings.setOutputFormat(format); });
}

Option ditherFlag(const char* name, DitherType type, OptionHelp help = {}) {
    return flag(
        name, [type](OptionContext& c) { c.settings.setDitherType(type); }, std::move(help));
}

std::vector<Option> reductionOptions() {
    const auto help = [](int rank, const char* line) {
        return OptionHelp{Section::Graphics, rank, {}, lines({line})};
    };
    return {
        string("--opt", applyPixelFormat,
               {Section::Graphics,
                1,
                text("<pixelformat>"),
                lines({"Optimized output for given pixel formats. Supported formats are:"}),
                {},
                enumList<OutputFormat>}),
        pixelFormatFlag("--opt565", OutputFormat::RGB565),
        pixelFormatFlag("--opt4444", OutputFormat::RGBA4444),
        ditherFlag("--dither", DitherType::FloydSteinberg),
        ditherFlag("--dither-fs", DitherType::FloydSteinberg,
                   help(4, "Enables Floyd-Steinberg dithering without alpha for color reduction")),
        ditherFlag("--dither-none-nn", DitherType::NearestNeighbour,
                   help(2, "No dithering, nearest neighbour (non linear color reduction, may lead to lower "
                           "contrast), default")),
        ditherFlag("--dither-none-linear", DitherType::Linear,
                   help(3, "No dithering, linear color reduction, better contrast, but may be darker than "
                           "original")),
        ditherFlag("--dither-fs-alpha", DitherType::FloydSteinbergAlpha,
                   help(5, "Enables Floyd-Steinberg dithering with alpha for color reduction")),
        ditherFlag("--dither-atkinson", DitherType::Atkinson,
                   help(6, "Enables Atkinson dithering without alpha for color reduction")),
        ditherFlag("--dither-atkinson-alpha", DitherType::AtkinsonAlpha,
                   help(7, "Enables Atkinson dithering with alpha for color reduction")),
    };
}

std::vector<Option> preparationOptions() {
    return {
        flag("--disable-auto-alias", [](OptionContext& c) { c.settings.setAutoAliasEnabled(false); },
             {Section::Padding, 9, {}, lines({"Disables automated alias creation"})}),
        integer(
            "--extrude", OptionRange::Any,
            [](OptionContext& c, int value) { c.settings.globalSpriteSettings()->setExtrude(uint(value)); },
            {Section::Additional, 3, text("<int>"),
             lines({"Extrudes the sprites by given value of pixels to fix flickering problems in tile "
                    "maps"})}),
        integer(
            "--dpi", OptionRange::Positive,
            [](OptionContext& c, int value) { c.settings.setDpi(uint(value)); },
            {Section::Graphics, 12, text("<value>"), lines({"Set dpi for output image (default is 72)"})}),
        integer("--jpg-quality", OptionRange::Any,
                [](OptionContext& c, int value) { c.settings.setJpgQuality(uint(value)); },
                {Section::Graphics, 9, text("<value>"),
                 lines({"Sets the quality for jpg export: -1 for default, 0..100 where 0 is low quality"})}),
        flag("--shape-debug", [](OptionContext& c) { c.settings.setShapeDebug(true); },
             {Section::Debugging, 1, {}, lines({"Creates boxes around shapes for debugging"})}),
        flag("--premultiply-alpha", [](OptionContext& c) { c.settings.setPremultiplyAlpha(true); },
             {Section::Graphics,
              11,
              {},
              lines({"Premultiply alpha values (shoud be used with PVRs for cocos2d)"})}),
        flag("--heuristic-mask",
             [](OptionContext& c) { c.settings.globalSpriteSettings()->setHeuristicMask(true); },
             {Section::Graphics,
              13,
              {},
              lines(
                  {"Removes equal colored pixels from the border of sprites. Creating a transparency mask "}),
              text("on sprites which use one unique color as transparent color.")}),
        flag("--trim-sprite-names", [](OptionContext& c) { c.settings.setTrimSpriteNames(true); },
             {Section::Output, 8, {}, lines({"Removes .png, .bmp and .jpg from sprite names"})}),
        list("--ignore-files",
             [](OptionContext& c, const QStringList& patterns) { c.settings.setIgnoreFileList(patterns); },
             {Section::Output, 10, text("<regexp>"),
              lines({"Ignores all images fitting the given pattern (may be used several times)",
                     "You can use * and ?, make sure to escape the wildcards when working with bash"})}),
        list("--replace",
             [](OptionContext& c, const QStringList& rules) { c.settings.setReplaceList(rules); },
             {Section::Output, 9, text("<regexp>=<string>"),
              lines({"Replaces matching parts of the sprite's name with <string>",
                     "Uses full regular expressions, make sure to escape the expression"})}),
        flag("--quiet", [](OptionContext& c) { c.settings.setQuiet(true); },
             {Section::Debugging, 3, {}, lines({"No output except for errors"})}),
    };
}

} // namespace

std::vector<Option> pixelOptions() { return joined({reductionOptions, preparationOptions}); }
