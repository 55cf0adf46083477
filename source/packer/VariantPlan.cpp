#include "VariantPlan.h"

#include "Error.h"
#include "PixelFormats.h"
#include "SaturatedMath.h"
#include "Settings.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

using Format = SettingsBase::TextureFormat;

bool isPvrFile(Format format) {
    return format == Format::pvr2 || format == Format::pvr2gz || format == Format::pvr2ccz;
}

/// No sheet has room for more, at any scale.
constexpr qint64 maxPadding = 1000000;

/// The smallest multiple of `factor` that is still `padding` pixels wide in the smallest sheet.
int raisedPadding(uint padding, int factor, double smallestScale) {
    if (padding == 0)
        return 0;
    // Written so that a scale that is no number is refused too.
    if (!(double(padding) <= double(maxPadding) * smallestScale))
        throw Error(
            Error::CommandLine,
            QStringLiteral("A padding of %1 pixels can't be kept in a sheet at a scale of %2; choose a "
                           "smaller padding or a larger scale")
                .arg(padding)
                .arg(smallestScale));
    qint64 multiple = std::max(qint64(padding / smallestScale / factor) - 1, qint64(0));
    while (double(multiple * factor) * smallestScale < double(padding))
        ++multiple;
    return int(multiple * factor);
}

uint scaled(int base, double scale) {
    const float product = float(base) * float(scale);
    return uint(qRound(std::min(product, float(maxPadding))));
}

QString absolutePath(const GFileName& fileName) {
    return fileName.isEmpty() ? QString() : QDir::cleanPath(QFileInfo(fileName.path()).absoluteFilePath());
}

} // namespace

VariantPlan::VariantPlan(const Settings& settings) : m_settings(settings) {}

void VariantPlan::computeBaseValues() {
    if (!m_settings.forceIdenticalLayout())
        return;
    m_baseFactor = m_settings.commonBaseFactor();
    if (m_baseFactor == -1)
        throw Error(
            Error::DataFile,
            QStringLiteral("Can't derive a base factor for identical layout. Adjust the scale factors "
                           "or set some of them to allow fractions"));
    const SpriteSettings& sprites = *m_settings.globalSpriteSettings();
    double smallest = sprites.scale();
    for (const AutoSDSettings* variant : m_settings.autoSDSettings())
        smallest = std::min(smallest, variant->scale() * sprites.scale());
    m_baseShapePadding = raisedPadding(m_settings.shapePadding(), m_baseFactor, smallest);
    m_baseBorderPadding = raisedPadding(m_settings.borderPadding(), m_baseFactor, smallest);
    m_baseExtrude = raisedPadding(sprites.extrude(), m_baseFactor, smallest);
}

void VariantPlan::validate() const {
    if (m_settings.commonDivisorX() == 0)
        throw Error(Error::CommandLine, QStringLiteral("CommonDivisorX must be >= 1"));
    if (m_settings.commonDivisorY() == 0)
        throw Error(Error::CommandLine, QStringLiteral("CommonDivisorY must be >= 1"));
    if (isPvrtcFormat(m_settings.outputFormat()) && !isPvrFile(m_settings.textureFormat()))
        throw Error(Error::PvrLimit,
                    QStringLiteral("PVRTC compression can only be used with PVR file format"));
    if (m_settings.outputFormat() == SettingsBase::OutputFormat::ETC1 &&
        m_settings.textureFormat() != Format::pkm)
        throw Error(Error::TextureFile, QStringLiteral("ETC1 can only be used with PKM file format"));
}

void VariantPlan::checkVariants() const {
    for (const AutoSDSettings* variant : m_settings.autoSDSettings()) {
        const float scale = float(variant->scale());
        // The range of the command line; written so that a scale that is no number is refused too.
        if (!(scale >= 0.01f && scale <= 10.0f))
            throw Error(
                Error::DataFile,
                QStringLiteral("The scale of the variant \"%1\" must be between 0.01 and 10.0, is: %2")
                    .arg(variant->extension(), QString::number(variant->scale())));
    }
    if (!m_settings.autoSDSettings().isEmpty() && m_settings.mainExtension().isEmpty())
        throw Error(Error::DataFile,
                    QStringLiteral("The variants need a main extension: the part of the file names "
                                   "that each variant replaces by its own (--main-extension)"));
}

std::unique_ptr<Settings> VariantPlan::next() {
    double scale = 1.0;
    QSize maxSize = m_settings.maxTextureSize();
    const AutoSDSettings* entry = nullptr;
    if (m_index == 0) {
        computeBaseValues();
    } else {
        if (m_settings.autoSDSettings().size() < m_index)
            return nullptr;
        entry = m_settings.autoSDSettings().at(m_index - 1);
        scale = entry->scale();
        maxSize = entry->maxTextureSize();
    }
    ++m_index;
    validate();
    std::unique_ptr<Settings> variant(m_settings.clone());
    SpriteSettings& sprites = *variant->globalSpriteSettings();
    sprites.setScale(m_settings.globalSpriteSettings()->scale() * scale);
    if (m_settings.forceIdenticalLayout())
        applyIdenticalLayout(*variant, scale);
    variant->setMaxTextureSize(maxSize);
    applyFixedSize(*variant, scale);
    if (entry)
        applyExtension(*variant, entry->extension());
    claimNames(*variant);
    return variant;
}

/// A file that is written twice in one run keeps only the second content.
void VariantPlan::claimNames(const Settings& variant) {
    for (const QString& name :
         {absolutePath(variant.textureFileName()), absolutePath(variant.dataFileName())}) {
        if (name.isEmpty())
            continue;
        if (m_names.contains(name))
            throw Error(
                Error::DataFile,
                QStringLiteral("%1 would be written twice; texture, data file and each variant need names of "
                               "their own (--sheet, --data, --autosd-variant)")
                    .arg(name));
        m_names.insert(name);
    }
}

void VariantPlan::applyIdenticalLayout(Settings& variant, double scale) const {
    variant.setShapePadding(scaled(m_baseShapePadding, scale));
    variant.setBorderPadding(scaled(m_baseBorderPadding, scale));
    variant.globalSpriteSettings()->setExtrude(scaled(m_baseExtrude, scale));
    variant.setCommonDivisorX(scaled(m_baseFactor, scale));
    variant.setCommonDivisorY(scaled(m_baseFactor, scale));
}

void VariantPlan::applyFixedSize(Settings& variant, double scale) const {
    const QSize fixed = m_settings.fixedTextureSize();
    QSize size = fixed;
    if (fixed.width() > 0)
        size.setWidth(saturated::toInt(qint64(fixed.width() * scale)));
    if (fixed.height() > 0)
        size.setHeight(saturated::toInt(qint64(fixed.height() * scale)));
    variant.setFixedTextureSize(size);
}

void VariantPlan::applyExtension(Settings& variant, const QString& extension) const {
    const QString main = m_settings.mainExtension();
    QString dataFile = variant.dataFileName();
    if (!dataFile.contains(main))
        throw Error(Error::DataFile, QStringLiteral("Data file name must contain \"%1\"").arg(main));
    variant.setDataFileName(dataFile.replace(main, extension));
    QString textureFile = variant.textureFileName();
    if (!textureFile.contains(main))
        throw Error(Error::TextureFile, QStringLiteral("Texture file name must contain \"%1\"").arg(main));
    variant.setTextureFileName(textureFile.replace(main, extension));
}
