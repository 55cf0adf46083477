#include "LegacySettings.h"

#include "Error.h"
#include "HalfSizeNames.h"
#include "LegacyValues.h"

#include <cstddef>

namespace {

/// A word of the old format. The words are the format's own, whatever the settings are called or shown as
/// now.
template <typename E>
struct Word {
    const char* text;
    E value;
};

template <typename E, std::size_t count>
std::optional<E> find(const Word<E> (&words)[count], const QString& text) {
    for (const Word<E>& word : words) {
        if (text == QLatin1String(word.text))
            return word.value;
    }
    return std::nullopt;
}

using TextureFormat = SettingsBase::TextureFormat;
constexpr Word<TextureFormat> textureSuffixes[] = {{".pvr", TextureFormat::pvr2},
                                                   {".pvr.ccz", TextureFormat::pvr2ccz},
                                                   {".pvr.gz", TextureFormat::pvr2gz},
                                                   {".png", TextureFormat::png},
                                                   {".jpg", TextureFormat::jpg}};

using OutputFormat = SettingsBase::OutputFormat;
constexpr Word<OutputFormat> outputFormats[] = {{"RGBA8888", OutputFormat::RGBA8888},
                                                {"BGRA8888", OutputFormat::BGRA8888},
                                                {"RGBA4444", OutputFormat::RGBA4444},
                                                {"RGB888", OutputFormat::RGB888},
                                                {"RGB565", OutputFormat::RGB565},
                                                {"RGBA5551", OutputFormat::RGBA5551},
                                                {"RGBA5555", OutputFormat::RGBA5555},
                                                {"PVRTC2", OutputFormat::PVRTC2},
                                                {"PVRTC4", OutputFormat::PVRTC4},
                                                {"PVRTC2 (no alpha)", OutputFormat::PVRTC2_NOALPHA},
                                                {"PVRTC4 (no alpha)", OutputFormat::PVRTC4_NOALPHA},
                                                {"Alpha", OutputFormat::ALPHA},
                                                {"Alpha+Intensity", OutputFormat::ALPHA_INTENSITY}};

using DitherType = SettingsBase::DitherType;
constexpr Word<DitherType> ditherTypes[] = {{"NearestNeighbour", DitherType::NearestNeighbour},
                                            {"Linear", DitherType::Linear},
                                            {"FloydSteinberg", DitherType::FloydSteinberg},
                                            {"FloydSteinberg+Alpha", DitherType::FloydSteinbergAlpha},
                                            {"Atkinson", DitherType::Atkinson},
                                            {"Atkinson+Alpha", DitherType::AtkinsonAlpha}};

constexpr Word<ScaleMode> scaleModes[] = {{"smooth", ScaleMode::Smooth},   {"fast", ScaleMode::Fast},
                                          {"scale2x", ScaleMode::Scale2x}, {"scale3x", ScaleMode::Scale3x},
                                          {"scale4x", ScaleMode::Scale4x}, {"eagle", ScaleMode::Eagle},
                                          {"hq2x", ScaleMode::Hq2x}};

using SortBy = AlgorithmBasicSettings::SortBy;
constexpr Word<SortBy> sortKeys[] = {{"best", SortBy::Best},   {"name", SortBy::Name},
                                     {"width", SortBy::Width}, {"height", SortBy::Height},
                                     {"area", SortBy::Area},   {"circumference", SortBy::Circumference}};

using Order = AlgorithmBasicSettings::Order;
constexpr Word<Order> orders[] = {{"ascending", Order::Ascending}, {"descending", Order::Descending}};

using Heuristic = AlgorithmMaxRectsSettings::Heuristic;
constexpr Word<Heuristic> heuristics[] = {{"best", Heuristic::Best},
                                          {"shortSide", Heuristic::ShortSideFit},
                                          {"longSide", Heuristic::LongSideFit},
                                          {"area", Heuristic::AreaFit},
                                          {"bottomLeft", Heuristic::BottomLeft},
                                          {"contactPoint", Heuristic::ContactPoint}};

using MinFilter = AndEngine::MinFilter;
constexpr Word<MinFilter> minFilters[] = {{"nearest", MinFilter::Nearest},
                                          {"linear", MinFilter::Linear},
                                          {"linear_mipmap_linear", MinFilter::LinearMipmapLinear},
                                          {"linear_mipmap_nearest", MinFilter::LinearMipmapNearest},
                                          {"nearest_mipmap_linear", MinFilter::NearestMipmapLinear},
                                          {"nearest_mipmap_nearest", MinFilter::NearestMipmapNearest}};

using MagFilter = AndEngine::MagFilter;
constexpr Word<MagFilter> magFilters[] = {{"nearest", MagFilter::MagNearest},
                                          {"linear", MagFilter::MagLinear}};

using Wrap = AndEngineWrap::Wrap;
constexpr Word<Wrap> wraps[] = {{"clamp", Wrap::Clamp}, {"repeat", Wrap::Repeat}};

// Unknown words of the filters, the wraps, the scale mode and the sorting are let pass as the default: a
// packing run works with it. A wrong pixel format, dither type, algorithm or data format would give other
// files than were meant, so these are refused.

void fillAndEngine(AndEngine& andEngine, const LegacyValues& values) {
    andEngine.setMinFilter(
        find(minFilters, values.text("andengine-minfilter")).value_or(andEngine.minFilter()));
    andEngine.setMagFilter(
        find(magFilters, values.text("andengine-magfilter")).value_or(andEngine.magFilter()));
    AndEngineWrap* wrap = andEngine.wrap();
    wrap->setT(find(wraps, values.text("andengine-wrapt")).value_or(wrap->t()));
    wrap->setS(find(wraps, values.text("andengine-wraps")).value_or(wrap->s()));
    andEngine.setJavaFileName(values.text("andengine-java"));
    andEngine.setPackageName(values.text("andengine-packagename"));
}

void fillLibGdx(LibGDXFiltering& filtering, const LegacyValues& values) {
    filtering.setXName(values.text("libGdxFilteringX"));
    filtering.setYName(values.text("libGdxFilteringY"));
}

void fillAlgorithm(AlgorithmSettings& algorithm, const LegacyValues& values) {
    const auto& algorithms = GEnumInfo<AlgorithmSettings::AlgorithmId>::instance();
    const QString name = values.text("algorithm");
    if (!algorithms.names().contains(name))
        throw Error(Error::AlgorithmId, QStringLiteral("Unknown algorithm: %1\nAvailable algorithms: %2")
                                            .arg(name, algorithms.names().join(QStringLiteral(", "))));
    algorithm.setAlgorithm(algorithms.value(name));
    using Constraints = AlgorithmSettings::SizeConstraints;
    algorithm.setSizeConstraints(values.flag("allowFreeSize") ? Constraints::AnySize : Constraints::POT);
    AlgorithmBasicSettings* basic = algorithm.basic();
    basic->setSortBy(find(sortKeys, values.text("basic-sort-by")).value_or(basic->sortBy()));
    basic->setOrder(find(orders, values.text("basic-order")).value_or(basic->order()));
    AlgorithmMaxRectsSettings* maxRects = algorithm.maxRects();
    maxRects->setHeuristic(
        find(heuristics, values.text("maxrects-heuristics")).value_or(maxRects->heuristic()));
}

void fillSprites(SpriteSettings& sprites, const LegacyValues& values) {
    sprites.setScale(double(values.factor("scale")));
    sprites.setScaleMode(find(scaleModes, values.text("scaleMode")).value_or(sprites.scaleMode()));
    sprites.setInnerPadding(values.count("innerPadding"));
    sprites.setExtrude(values.count("extrude"));
    sprites.setTrimThreshold(values.count("trimThreshold"));
    sprites.setHeuristicMask(values.flag("heuristicMask"));
    using TrimMode = SpriteSettings::TrimMode;
    sprites.setTrimMode(values.flag("crop")   ? TrimMode::CropKeepPos
                        : values.flag("trim") ? TrimMode::Trim
                                              : TrimMode::None);
}

OutputFormat outputFormat(const LegacyValues& values) {
    const QString word = values.text("outputFormat");
    const std::optional<OutputFormat> format = find(outputFormats, word);
    if (!format)
        throw Error(Error::PixelFormat, QStringLiteral("Unknown output format: %1").arg(word));
    return *format;
}

DitherType ditherType(const LegacyValues& values) {
    const QString word = values.text("ditherType");
    const std::optional<DitherType> type = find(ditherTypes, word);
    if (!type)
        throw Error(Error::DitherType, QStringLiteral("Unknown ditherType: %1").arg(word));
    return *type;
}

void fillTexture(Settings& settings, const LegacyValues& values) {
    const QString name = values.text("textureFileName");
    settings.setTextureFileName(name);
    settings.setTextureFormat(legacyTextureFormat(name).value_or(settings.textureFormat()));
    settings.setTextureSubPath(values.text("textureSubPath"));
    settings.setOutputFormat(outputFormat(values));
    settings.setDitherType(ditherType(values));
    settings.setFlipPVR(values.flag("flipPVR"));
    settings.setPremultiplyAlpha(values.flag("premultiplyAlpha"));
    settings.setReduceBorderArtifacts(values.flag("reduceBorderArtifacts"));
    settings.setBackgroundColor(values.count("backgroundColor"));
    settings.setDpi(uint(values.integer("dpi")));
    const int jpgQuality = values.integer("jpgQuality");
    settings.setJpgQuality(jpgQuality == -1 ? 80 : uint(jpgQuality)); // -1 stood for the writer's default
}

void fillLayout(Settings& settings, const LegacyValues& values) {
    settings.setAutoAliasEnabled(values.flag("autoAliasEnabled"));
    settings.setShapeDebug(values.flag("shapeDebug"));
    settings.setShapePadding(values.count("shapePadding"));
    settings.setBorderPadding(values.count("borderPadding"));
    settings.setFixedTextureSize(values.size("forcedTextureSize"));
    settings.setMaxTextureSize(values.size("maxTextureSize"));
}

void fillFiles(Settings& settings, const LegacyValues& values) {
    settings.setDataFileName(values.text("dataFileName"));
    settings.setTrimSpriteNames(values.flag("trimSpriteNames"));
    GFileNameList files;
    for (const QString& file : values.list("fileList"))
        files.append(file);
    settings.setFileList(files);
    settings.setIgnoreFileList(values.list("ignoreFilesList"));
    settings.setReplaceList(values.list("replaceList"));
}

/// The one further resolution that the first generation knew, at half the size. Its suffixes were fixed, and
/// a name with none of them counted as one with the last.
void addHalfSize(Settings& settings) {
    const HalfSizeNames names = halfSizeNames(settings.textureFileName())
                                    .value_or(HalfSizeNames{QStringLiteral("2x."), QStringLiteral(".")});
    auto* variant = new AutoSDSettings;
    variant->setScale(0.5);
    variant->setExtension(names.extension);
    settings.addAutoSDSettings(variant);
    settings.setMainExtension(names.mainExtension);
}

} // namespace

std::unique_ptr<Settings> settingsOfLegacyValues(const LegacyValues& values) {
    auto settings = std::make_unique<Settings>();
    fillAndEngine(*settings->andEngine(), values);
    fillLibGdx(*settings->libGdx()->filtering(), values);
    fillAlgorithm(*settings->algorithmSettings(), values);
    settings->setAllowRotation(values.flag("allowRotation"));
    fillSprites(*settings->globalSpriteSettings(), values);
    // Behind rotation and trimming: what the format can't express goes off, whatever was stored.
    settings->setDataFormatChecked(values.text("dataFormat"));
    fillTexture(*settings, values);
    fillLayout(*settings, values);
    fillFiles(*settings, values);
    if (values.flag("autoSD"))
        addHalfSize(*settings);
    // The version stays 0, which tells until the next save that the file has another form.
    settings->setDirty(false);
    return settings;
}

std::optional<SettingsBase::TextureFormat> legacyTextureFormat(const QString& textureFileName) {
    const QString name = textureFileName.toLower();
    for (const Word<TextureFormat>& suffix : textureSuffixes) {
        if (name.endsWith(QLatin1String(suffix.text)))
            return suffix.value;
    }
    return std::nullopt;
}
