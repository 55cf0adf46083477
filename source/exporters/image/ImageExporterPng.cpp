#include "ImageExporterPng.h"

#include "Error.h"
#include "OutputFile.h"

#include <QFileInfo>
#include <QImageWriter>

namespace {

bool isRefused(SettingsBase::OutputFormat format) {
    using Format = SettingsBase::OutputFormat;
    switch (format) {
    case Format::PVRTC2:
    case Format::PVRTC4:
    case Format::PVRTC2_NOALPHA:
    case Format::PVRTC4_NOALPHA:
    case Format::ALPHA_INTENSITY:
    case Format::ETC1:
        return true;
    default:
        return false;
    }
}

/// -1 is the toolkit's own choice. For png 0 means strongest compression.
int quality(const QString& fileName, const Settings& settings) {
    const auto endsIn = [&](QLatin1String suffix) { return fileName.endsWith(suffix, Qt::CaseInsensitive); };
    if (endsIn(QLatin1String(".png")))
        return 0;
    if (endsIn(QLatin1String(".jpg")) || endsIn(QLatin1String(".jpeg")))
        return static_cast<int>(settings.jpgQuality());
    return -1;
}

[[noreturn]] void fail(const QString& fileName, const QString& reason) {
    throw Error(Error::TextureFile,
                QStringLiteral("Failed to write texture to file %1: %2").arg(fileName, reason));
}

} // namespace

QString ImageExporterPng::defaultFileName() const { return QStringLiteral("out.png"); }

void ImageExporterPng::write(const Settings& settings, const PackedTexture& texture) {
    if (isRefused(settings.outputFormat()))
        throw Error(Error::TextureFile,
                    QStringLiteral("This texture format can not be used with png/jpg/bmp."));
    const QImage sheet = renderTexture(settings, texture);
    OutputFile output(fileName());
    if (!output.open())
        fail(fileName(), output.errorString());
    // The device isn't the file of that name yet, so the suffix has to be handed over.
    QImageWriter writer(&output.device(), QFileInfo(fileName()).suffix().toLower().toLatin1());
    writer.setQuality(quality(fileName(), settings));
    if (!writer.write(sheet)) {
        const bool deviceFailed = output.device().error() != QFileDevice::NoError;
        fail(fileName(), deviceFailed ? output.errorString() : writer.errorString());
    }
    if (!output.commit())
        fail(fileName(), output.errorString());
}
