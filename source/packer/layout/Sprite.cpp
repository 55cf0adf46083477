#include "Sprite.h"

#include "ColorReduction.h"
#include "Error.h"
#include "NewImage.h"
#include "SaturatedMath.h"
#include "ScaleImage.h"
#include "Settings.h"
#include "SpritePreparation.h"

#include <QColor>

#include <atomic>
#include <new>

namespace {

using TrimMode = SpriteSettings::TrimMode;

/// The settings that reach pixels, as they were when the image was last prepared. The first values are none
/// that a setting has, where there is one.
struct Recipe {
    double scale = -1.0;
    ScaleMode scaleMode = ScaleMode::Smooth;
    bool heuristicMask = false;
    int commonDivisorY = 0;
    int commonDivisorX = 0;
    int trimThreshold = -1;
    int extrude = 0;
    TrimMode trimMode = TrimMode::None;
    int innerPadding = 0;
    SettingsBase::OutputFormat outputFormat = SettingsBase::OutputFormat::RGBA8888;
    QRgb backgroundColor = 0;
    SettingsBase::DitherType ditherType = SettingsBase::DitherType::NearestNeighbour;
    bool premultiplyAlpha = false;
    bool shapeDebug = false;

    /// True if anything differed.
    bool take(const Settings& settings);
};

/// What preparation makes of a source image.
struct Prepared {
    GCachedImage image;
    QSize size;
    QPoint offset;
    bool trimmed = false;
    quint32 hash = 0;
    int extrude = 0;
};

template <class Value>
bool assign(Value& member, const Value& value) {
    if (member == value)
        return false;
    member = value;
    return true;
}

bool Recipe::take(const Settings& settings) {
    using SpritePreparation::length;
    const SpriteSettings& sprite = *settings.globalSpriteSettings();
    bool changed = assign(scaleMode, sprite.scaleMode());
    changed |= assign(scale, sprite.scale());
    changed |= assign(heuristicMask, sprite.heuristicMask());
    changed |= assign(commonDivisorX, length(settings.commonDivisorX()));
    changed |= assign(commonDivisorY, length(settings.commonDivisorY()));
    changed |= assign(trimMode, sprite.trimMode());
    changed |= assign(extrude, length(sprite.extrude()));
    // As a signed number: no alpha lies under a threshold below zero.
    changed |= assign(trimThreshold, static_cast<int>(sprite.trimThreshold()));
    changed |= assign(innerPadding, length(sprite.innerPadding()));
    changed |= assign(shapeDebug, settings.shapeDebug());
    changed |= assign(outputFormat, settings.outputFormat());
    changed |= assign(backgroundColor, settings.backgroundColor());
    changed |= assign(ditherType, settings.ditherType());
    changed |= assign(premultiplyAlpha, settings.premultiplyAlpha());
    return changed;
}

/// Mask, scale and extrusion: what comes before the cut, for the main sheet and for derived ones alike.
QImage enlarged(const GCachedImage& source, const Recipe& recipe, double scale, int extrude) {
    QImage image = toArgb32(source.image());
    if (recipe.heuristicMask)
        image = SpritePreparation::maskHeuristically(image);
    image = scaleImage(image, scale, recipe.scaleMode);
    return SpritePreparation::extrudeBorder(image, extrude);
}

/// Frame and colours: what comes last.
QImage finished(const QImage& image, const Recipe& recipe) {
    const QImage framed = recipe.shapeDebug ? SpritePreparation::drawDebugFrame(image) : image;
    return reduceColors(framed, recipe.outputFormat, QColor(recipe.backgroundColor), recipe.ditherType,
                        recipe.premultiplyAlpha);
}

/// Cuts or pads to the mode's size and sets the numbers that come with it.
QImage cut(const QImage& image, const Recipe& recipe, Prepared& prepared) {
    prepared.size = image.size();
    if (recipe.trimMode == TrimMode::None) {
        const QImage padded =
            SpritePreparation::padToDivisors(image, recipe.commonDivisorX, recipe.commonDivisorY);
        prepared.size = padded.size();
        return padded;
    }
    const SpritePreparation::TrimResult trim = SpritePreparation::trimTransparent(
        image, recipe.trimThreshold, recipe.extrude, recipe.commonDivisorX, recipe.commonDivisorY);
    if (recipe.trimMode == TrimMode::Trim)
        prepared.trimmed = trim.image.size() != prepared.size;
    else
        prepared.size = trim.image.size();
    if (recipe.trimMode != TrimMode::Crop)
        prepared.offset = trim.offset;
    return trim.image;
}

Prepared prepare(const GCachedImage& source, const Recipe& recipe) {
    Prepared prepared;
    QImage image = enlarged(source, recipe, recipe.scale, recipe.extrude);
    if (image.isNull())
        throw Error(Error::ScaledSprite,
                    QStringLiteral("Nothing is left of the sprite at a scale of %1; choose a "
                                   "larger one (--scale)")
                        .arg(recipe.scale));
    image = SpritePreparation::addInnerPadding(cut(image, recipe, prepared), recipe.innerPadding);
    // The inner padding counts, the extruded pixels, which came in before the size was taken, don't.
    const int change = 2 * (recipe.innerPadding - recipe.extrude);
    prepared.size += QSize(change, change);
    image = finished(image, recipe);
    prepared.hash = SpritePreparation::pixelHash(image);
    prepared.extrude = recipe.extrude;
    prepared.image = GCachedImage(image);
    return prepared;
}

int nextId() {
    static std::atomic<int> id{0};
    return id.fetch_add(1, std::memory_order_relaxed);
}

} // namespace

struct Sprite::Data {
    QList<Sprite> aliases;
    GCachedImage sourceImage;
    Prepared prepared;
    Recipe recipe;
    int shapePadding = 0;
    bool dirty = true;
    QString failure;
    QString name;
    FileData fileData;
    int id = -1;
};

Sprite::Sprite() : m_data(std::make_shared<Data>()) {}

Sprite::Sprite(const QString& name, const FileData& fileData) : m_data(std::make_shared<Data>()) {
    m_data->name = name;
    m_data->fileData = fileData;
    m_data->id = nextId();
}

void Sprite::setImage(const GCachedImage& image) {
    m_data->sourceImage = image;
    m_data->prepared.hash = 0;
    m_data->dirty = true;
    m_data->failure.clear();
}

void Sprite::update(const Settings& settings) {
    Data& data = *m_data;
    // The packers add it; no pixel depends on it.
    data.shapePadding = SpritePreparation::length(settings.shapePadding());
    if (data.sourceImage.isNull())
        return;
    data.dirty |= data.recipe.take(settings);
    if (!data.dirty)
        return;
    try {
        data.prepared = prepare(data.sourceImage, data.recipe);
        data.dirty = false;
        data.failure.clear();
    } catch (const Error& error) {
        data.failure = error.message();
    } catch (const std::bad_alloc&) {
        data.failure = QStringLiteral("Out of memory");
    } catch (const std::exception& exception) {
        data.failure = QString::fromUtf8(exception.what());
    } catch (...) {
        data.failure = QStringLiteral("Unknown");
    }
}

QImage Sprite::renderScaled(double scale, int extrude) const {
    if (m_data->sourceImage.isNull())
        return {};
    const auto scaled = [scale](int value) {
        return qRound(static_cast<float>(value) * static_cast<float>(scale));
    };
    const Prepared& main = m_data->prepared;
    const QSize size = main.image.size();
    const QRect rectangle(scaled(main.offset.x()), scaled(main.offset.y()), scaled(size.width()),
                          scaled(size.height()));
    const QImage image = enlarged(m_data->sourceImage, m_data->recipe, scale, extrude);
    return finished(SpritePreparation::cutOut(image, rectangle), m_data->recipe);
}

const QString& Sprite::name() const { return m_data->name; }
const FileData& Sprite::fileData() const { return m_data->fileData; }
int Sprite::id() const { return m_data->id; }
const GCachedImage& Sprite::image() const { return m_data->prepared.image; }
QSize Sprite::size() const { return m_data->prepared.size; }
QPoint Sprite::offset() const { return m_data->prepared.offset; }
bool Sprite::trimmed() const { return m_data->prepared.trimmed; }
quint32 Sprite::hash() const { return m_data->prepared.hash; }
int Sprite::extrude() const { return m_data->prepared.extrude; }
const QString& Sprite::failure() const { return m_data->failure; }
const QList<Sprite>& Sprite::aliases() const { return m_data->aliases; }
void Sprite::clearAliases() { m_data->aliases.clear(); }
void Sprite::addAlias(const Sprite& sprite) { m_data->aliases.append(sprite); }

QSize Sprite::paddedSize() const {
    const QSize size = m_data->prepared.image.size();
    const auto padded = [this](int side) { return saturated::toInt(qint64{side} + m_data->shapePadding); };
    return {padded(size.width()), padded(size.height())};
}
