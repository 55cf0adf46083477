#include "OptionRows.h"

#include "AutoSDOption.h"
#include "Error.h"
#include "Settings.h"

using namespace optionRows;

namespace {

using Section = OptionSection;
using TrimMode = SpriteSettings::TrimMode;

Option trimFlag(const char* name, TrimMode mode) {
    return flag(name, [mode](OptionContext& c) { c.settings.globalSpriteSettings()->setTrimMode(mode); });
}

std::vector<Option> nameOptions() {
    return {
        string("--texturepath",
               [](OptionContext& c, const QString& path) { c.settings.setTextureSubPath(path); },
               {Section::Output, 7, text("<path>"),
                lines({"Adds the path to the texture file name stored in the data file.",
                       "Use this if your sprite sheets are not stored in another folder than your data "
                       "files."})}),
        string("--main-extension",
               [](OptionContext& c, const QString& extension) { c.settings.setMainExtension(extension); },
               {Section::AutoSD, 1, text("<string>"),
                lines({"This is the part of the file name that is removed from the main file name when",
                       "creating the auto-sd variants. Usual values are @4x, @2x, -hd, -ipadhd"})}),
        integer(
            "--png-opt-level", OptionRange::NotNegative,
            [](OptionContext& c, int level) {
                if (level > 7)
                    throw Error(Error::CommandLine,
                                text("Optimzation levels for --png-opt-level: [0..7] where 0=off, 7=extreme, "
                                     "2=default"));
                c.settings.setPngOptimizationLevel(uint(level));
            },
            {Section::Graphics, 14, text("<value>"),
             lines({"Optimization level for optipng based compressing (0=off, 7=extreme), default is 2"})}),
        flag("--force-identical-layout", [](OptionContext& c) { c.settings.setForceIdenticalLayout(true); },
             {Section::AutoSD,
              3,
              {},
              lines({"Preserves the layout across multiple autosd variants",
                     "Might require enabling allowfraction on some variants of no common",
                     "base factor can be derived"})}),
        list("--autosd-variant",
             [](OptionContext& c, const QStringList& variants) {
                 for (const QString& variant : variants)
                     c.settings.addAutoSDSettings(parseAutoSDVariant(variant).release());
             },
             {Section::AutoSD, 2, text("<expr>"),
              lines(
                  {"Adds an AutoSD-Variant. Format of the expr ",
                   "<scale>:<extension>[:allowfraction][:<width>:[<height>]]",
                   "   <scale>         floating point value, e.g. 0.5",
                   "   <extension>     value that will replace the main extension in the file name, e.g. @2x",
                   "   allowfraction   allow floating point values for this scaling if no common",
                   "                   base factor can be calculated (force identical layout)",
                   "   <width>         optional maximum width of the texture, default is 2048",
                   "   <height>        optional maximum height of the texture",
                   "                   if not present the same value as width will be used"})}),
        string("--scale-mode",
               [](OptionContext& c, const QString& word) {
                   choose(c.settings.globalSpriteSettings(), word,
                          Words<ScaleMode>{{"fast", ScaleMode::Fast},
                                           {"smooth", ScaleMode::Smooth},
                                           {"scale2x", ScaleMode::Scale2x},
                                           {"eagle", ScaleMode::Eagle},
                                           {"hq2x", ScaleMode::Hq2x}},
                          &SpriteSettings::setScaleMode, &SpriteSettings::setScaleModeName);
               },
               {Section::Additional,
                5,
                text("<mode>"),
                lines({"Use mode for scaling:"}),
                {},
                enumList<ScaleMode>}),
        string("--data", [](OptionContext& c, const QString& name) { c.settings.setDataFileName(name); },
               {Section::Output, 3, text("<filename>"), lines({"Name of the data file to write"})}),
        string("--sheet", [](OptionContext& c, const QString& name) { c.settings.setTextureFileName(name); },
               {Section::Output, 1, text("<filename>"),
                lines({"Name of the sheet to write, see texture-format for formats available"})}),
    };
}

std::vector<Option> trimOptions() {
    return {
        trimFlag("--trim", TrimMode::Trim),
        trimFlag("--no-trim", TrimMode::None),
        trimFlag("--crop", TrimMode::CropKeepPos),
        string("--trim-mode",
               [](OptionContext& c, const QString& word) {
                   c.settings.globalSpriteSettings()->setTrimModeName(word);
               },
               {Section::Padding,
                7,
                text("<value>"),
                lines({"Remove transparent parts of a sprite to shrink atlas size and speed up rendering"}),
                {},
                enumList<TrimMode>}),
        flag("--flip-pvr", [](OptionContext& c) { c.settings.setFlipPVR(true); },
             {Section::Graphics, 10, {}, lines({"Flips PVR files vertically (used for unity framework)"})}),
    };
}

std::vector<Option> searchOptions() {
    const auto packMode = [](OptionContext& c, const QString& word) {
        c.settings.algorithmSettings()->setFreeSizeModeName(word);
    };
    using Constraints = AlgorithmSettings::SizeConstraints;
    return {
        flag("--allow-free-size",
             [](OptionContext& c) {
                 c.settings.algorithmSettings()->setSizeConstraints(Constraints::AnySize);
             }),
        string("--allow-free-size-mode", packMode),
        string("--pack-mode", packMode,
               {Section::Dimensions, 9, text("<mode>"), lines({"Optimization mode: Fast, Good, Best"})}),
        string(
            "--size-constraints",
            [](OptionContext& c, const QString& word) {
                c.settings.algorithmSettings()->setSizeConstraintsName(word);
            },
            {Section::Dimensions, 6, text("<value>"), lines({"Restrict sizes"}), {}, enumList<Constraints>}),
        flag("--force-squared",
             [](OptionContext& c) { c.settings.algorithmSettings()->setForceSquared(true); },
             {Section::Dimensions, 7, {}, lines({"Force squared texture"})}),
        flag("--force-word-aligned",
             [](OptionContext& c) { c.settings.algorithmSettings()->setForceWordAligned(true); },
             {Section::Dimensions, 8, {}, lines({"Forces word alignment of the texture"})}),
        flag("--disable-rotation", [](OptionContext& c) { c.settings.setAllowRotation(false); },
             {Section::Padding,
              6,
              {},
              lines({"Disables rotation of sprites (overriding file format's defaults)"})}),
        flag("--enable-rotation", [](OptionContext& c) { c.settings.setAllowRotation(true); },
             {Section::Padding,
              5,
              {},
              lines({"Enables rotation of sprites (overriding file format's defaults)"})}),
        integer("--common-divisor-x", OptionRange::Positive,
                [](OptionContext& c, int value) { c.settings.setCommonDivisorX(uint(value)); },
                {Section::Dimensions, 10, text("<int>"),
                 lines({"Resizes sprites - widths will be divisible by this value"})}),
        integer("--common-divisor-y", OptionRange::Positive,
                [](OptionContext& c, int value) { c.settings.setCommonDivisorY(uint(value)); },
                {Section::Dimensions, 11, text("<int>"),
                 lines({"Resizes sprites - heights will be divisible by this value"})}),
    };
}

} // namespace

std::vector<Option> outputOptions() { return joined({nameOptions, trimOptions, searchOptions}); }
