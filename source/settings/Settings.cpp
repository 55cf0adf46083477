#include "Settings.h"

#include "DataFormats.h"
#include "Error.h"
#include "GSerializableFactory.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace {
[[maybe_unused]] const bool registered =
    GSerializableFactory::add("Settings", []() -> QObject* { return new Settings; });
}

Settings::Settings(QObject* parent) : SettingsBase(parent) {}

Settings* Settings::clone() const {
    auto* copy = new Settings;
    copy->copyMembers(*this);
    copy->m_fileName = m_fileName;
    copy->m_verboseRequested = m_verboseRequested;
    return copy;
}

void Settings::setDataFormatChecked(const QString& name) {
    const DataFormats* formats = DataFormats::instance();
    const std::optional<DataFormat> format = formats ? formats->findFormat(name) : std::nullopt;
    if (!format) {
        const QStringList ids = formats ? formats->formatIds() : QStringList();
        throw Error(Error::Exporter, QStringLiteral("Unknown format: %1\nAvailable formats: %2")
                                         .arg(name, ids.join(QStringLiteral(", "))));
    }
    setDataFormat(name);
    if (!format->supportsRotation)
        setAllowRotation(false);
    SpriteSettings* sprites = globalSpriteSettings();
    if (!format->supportsTrimming && sprites->trimMode() == SpriteSettings::TrimMode::Trim)
        sprites->setTrimMode(SpriteSettings::TrimMode::None);
}

void Settings::addFiles(const QStringList& files) {
    GFileNameList list = fileList();
    for (const QString& file : files) {
        if (!list.contains(GFileName(file)))
            list.append(QFileInfo(file).absoluteFilePath());
    }
    setFileList(list);
}

void Settings::addFile(const QString& file) {
    GFileNameList list = fileList();
    if (!list.contains(GFileName(file)))
        list.append(file);
    setFileList(list);
}

void Settings::removeFiles(const QStringList& files) {
    GFileNameList list = fileList();
    for (const QString& file : files)
        list.removeAll(GFileName(file));
    setFileList(list);
}

int Settings::commonBaseFactor() const {
    const double globalScale = globalSpriteSettings()->scale();
    QList<double> divisors = {double(commonDivisorY()), double(commonDivisorX())};
    for (const AutoSDSettings* variant : autoSDSettings()) {
        if (!variant->acceptFractionalValues())
            divisors.append(1.0 / (variant->scale() * globalScale));
    }
    for (int factor = 1; factor <= 64; ++factor) {
        const auto fits = [factor](double divisor) {
            const double quotient = factor / divisor;
            return std::abs(quotient - std::round(quotient)) <= 0.0001;
        };
        if (std::all_of(divisors.cbegin(), divisors.cend(), fits))
            return factor;
    }
    return -1;
}

float Settings::smallestScale() const {
    const double globalScale = globalSpriteSettings()->scale();
    double smallest = globalScale;
    for (const AutoSDSettings* variant : autoSDSettings())
        smallest = std::min(smallest, variant->scale() * globalScale);
    return float(smallest);
}

int Settings::commonBaseSize() const { return qRound(float(commonBaseFactor()) * smallestScale()); }

void Settings::setVerbose(bool verbose) { m_verboseRequested = verbose; }
