#include "OptionRows.h"

#include "AlgorithmRegistry.h"
#include "DataExporterRegistry.h"
#include "DataFormats.h"
#include "Settings.h"

using namespace optionRows;

namespace {

using Section = OptionSection;
using Heuristic = AlgorithmMaxRectsSettings::Heuristic;
using SortBy = AlgorithmBasicSettings::SortBy;
using Order = AlgorithmBasicSettings::Order;

/// The format's own limits come first; every later option beats them.
void applyFormat(OptionContext& context, const QString& name) {
    Settings& settings = context.settings;
    settings.setDataFormatChecked(name);
    const DataFormat format = *DataFormats::instance()->findFormat(name);
    using TrimMode = SpriteSettings::TrimMode;
    using Constraints = AlgorithmSettings::SizeConstraints;
    settings.setAllowRotation(format.supportsRotation);
    settings.globalSpriteSettings()->setTrimMode(format.canTrim ? TrimMode::Trim : TrimMode::None);
    settings.algorithmSettings()->setSizeConstraints(format.supportsNPOT ? Constraints::AnySize
                                                                         : Constraints::POT);
}

std::vector<OptionListEntry> formatList() {
    std::vector<OptionListEntry> entries;
    for (const DataExporter* exporter : DataExporterRegistry::instance().exporters())
        entries.emplace_back(exporter->id(), exporter->description());
    return entries;
}

std::vector<OptionListEntry> algorithmList() {
    std::vector<OptionListEntry> entries;
    for (const Algorithm* algorithm : AlgorithmRegistry::instance().algorithms())
        entries.emplace_back(algorithm->name(), algorithm->description());
    return entries;
}

void setSides(OptionContext& context, QSize (SettingsBase::*get)() const, void (SettingsBase::*set)(QSize),
              int width, int height) {
    QSize size = (context.settings.*get)();
    if (width > 0)
        size.setWidth(width);
    if (height > 0)
        size.setHeight(height);
    (context.settings.*set)(size);
}

Option fixedSide(const char* name, bool isWidth, OptionHelp help) {
    return integer(
        name, OptionRange::Positive,
        [isWidth](OptionContext& context, int value) {
            setSides(context, &SettingsBase::fixedTextureSize, &SettingsBase::setFixedTextureSize,
                     isWidth ? value : 0, isWidth ? 0 : value);
        },
        std::move(help));
}

Option maximalSide(const char* name, bool isWidth, bool isHeight, OptionHelp help) {
    return integer(
        name, OptionRange::Positive,
        [isWidth, isHeight](OptionContext& context, int value) {
            setSides(context, &SettingsBase::maxTextureSize, &SettingsBase::setMaxTextureSize,
                     isWidth ? value : 0, isHeight ? value : 0);
        },
        std::move(help));
}

std::vector<Option> algorithmOptions() {
    return {
        string("--format", applyFormat,
               {Section::Output,
                4,
                text("<format>"),
                lines({"Format to write, default is cocos2d"}),
                {},
                formatList}),
        string("--algorithm",
               [](OptionContext& c, const QString& word) {
                   c.settings.algorithmSettings()->setAlgorithmName(word);
               },
               {Section::Algorithm, 1, text("<name>"), lines({"Choose algorithm"}), {}, algorithmList}),
        string("--maxrects-heuristics",
               [](OptionContext& c, const QString& word) {
                   choose(c.settings.algorithmSettings()->maxRects(), word,
                          Words<Heuristic>{{"best", Heuristic::Best},
                                           {"shortSide", Heuristic::ShortSideFit},
                                           {"longSide", Heuristic::LongSideFit},
                                           {"area", Heuristic::AreaFit},
                                           {"bottomLeft", Heuristic::BottomLeft},
                                           {"contactPoint", Heuristic::ContactPoint}},
                          &AlgorithmMaxRectsSettings::setHeuristic,
                          &AlgorithmMaxRectsSettings::setHeuristicName);
               },
               {Section::Algorithm,
                2,
                {},
                lines({"Heuristic for MaxRects algorithm"}),
                {},
                enumList<Heuristic>,
                text("    MaxRects"),
                6}),
        string("--basic-sort-by",
               [](OptionContext& c, const QString& word) {
                   choose(c.settings.algorithmSettings()->basic(), word,
                          Words<SortBy>{{"best", SortBy::Best},
                                        {"name", SortBy::Name},
                                        {"width", SortBy::Width},
                                        {"height", SortBy::Height},
                                        {"area", SortBy::Area},
                                        {"circumference", SortBy::Circumference}},
                          &AlgorithmBasicSettings::setSortBy, &AlgorithmBasicSettings::setSortByName);
               },
               {Section::Algorithm,
                3,
                {},
                lines({"Sort order for the sprite list"}),
                {},
                enumList<SortBy>,
                text("    Basic"),
                6}),
        string("--basic-order",
               [](OptionContext& c, const QString& word) {
                   choose(c.settings.algorithmSettings()->basic(), word,
                          Words<Order>{{"ascending", Order::Ascending}, {"descending", Order::Descending}},
                          &AlgorithmBasicSettings::setOrder, &AlgorithmBasicSettings::setOrderName);
               },
               {Section::Algorithm, 4, {}, lines({"Sorting direction"}), {}, enumList<Order>, {}, 6}),
    };
}

std::vector<Option> sizeOptions() {
    const auto help = [](int rank, const char* line) {
        return OptionHelp{Section::Dimensions, rank, text("<int>"), lines({line})};
    };
    return {
        fixedSide("--width", true, help(1, "Sets fixed width for texture")),
        fixedSide("--height", false, help(2, "Sets fixed height for texture")),
        maximalSide("--max-width", true, false,
                    help(3, "Sets the maximum width for the texture in auto size mode, default is 2048")),
        maximalSide("--max-height", false, true,
                    help(4, "Sets the maximum height for the texture in auto size mode, default is 2048")),
        maximalSide("--max-size", true, true,
                    help(5, "Sets the maximum width and height for the texture in auto size mode, default is "
                            "2048")),
        {text("--scale"),
         OptionKind::Float,
         OptionRange::Any,
         [](OptionContext& c, const OptionValue& value) {
             c.settings.globalSpriteSettings()->setScale(double(value.real));
         },
         {Section::Additional, 4, text("<float>"),
          lines({"Scales all images before creating the sheet. E.g. use 0.5 for half size"})}},
    };
}

std::vector<Option> paddingOptions() {
    const auto help = [](int rank, const char* line) {
        return OptionHelp{Section::Padding, rank, text("<int>"), lines({line})};
    };
    const auto shape = [](OptionContext& c, int value) { c.settings.setShapePadding(uint(value)); };
    const auto border = [](OptionContext& c, int value) { c.settings.setBorderPadding(uint(value)); };
    return {
        integer(
            "--padding", OptionRange::NotNegative,
            [shape, border](OptionContext& c, int value) {
                shape(c, value);
                border(c, value);
            },
            help(3, "Sets a padding around each shape, and to the border, value is in pixels, default is 2")),
        integer(
            "--trim-threshold", OptionRange::Any,
            [](OptionContext& c, int value) {
                c.settings.globalSpriteSettings()->setTrimThreshold(uint(value));
            },
            help(8, "Trim alpha values under the threshold value 1..255, default is 1")),
        integer("--shape-padding", OptionRange::NotNegative, shape,
                help(1, "Sets a padding around each shape, value is in pixels, default is 2")),
        integer("--border-padding", OptionRange::NotNegative, border,
                help(2, "Sets a padding around each the border, value is in pixels, default is 2")),
        integer(
            "--inner-padding", OptionRange::NotNegative,
            [](OptionContext& c, int value) {
                c.settings.globalSpriteSettings()->setInnerPadding(uint(value));
            },
            help(4, "Adds an inner padding around the sprite. The padding is added to the sprite's size, "
                    "default 0")),
    };
}

} // namespace

std::vector<Option> layoutOptions() { return joined({algorithmOptions, sizeOptions, paddingOptions}); }
