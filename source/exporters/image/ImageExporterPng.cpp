#include "ImageExporterPng.h"

#include "Error.h"
#include "OutputFile.h"
#include "SheetPng.h"

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

bool endsIn(const QString& fileName, const char* suffix) {
    return fileName.endsWith(QLatin1String(suffix), Qt::CaseInsensitive);
}

/// -1 is the toolkit's own choice. For png 0 means strongest compression.
int quality(const QString& fileName, const Settings& settings) {
    if (endsIn(fileName, ".png"))
        return 0;
    if (endsIn(fileName, ".jpg") || endsIn(fileName, ".jpeg"))
        return static_cast<int>(settings.jpgQuality());
    return -1;
}

[[noreturn]] void fail(const QString& fileName, const QString& reason) {
    throw Error(Error::TextureFile,
                QStringLiteral("Failed to write texture to file %1: %2").arg(fileName, reason));
}

void writeByToolkit(OutputFile& output, const QString& fileName, const QImage& sheet,
                    const Settings& settings) {
    // The device isn't the file of that name yet, so the suffix has to be handed over.
    QImageWriter writer(&output.device(), QFileInfo(fileName).suffix().toLower().toLatin1());
    writer.setQuality(quality(fileName, settings));
    if (writer.write(sheet))
        return;
    const bool deviceFailed = output.device().error() != QFileDevice::NoError;
    fail(fileName, deviceFailed ? output.errorString() : writer.errorString());
}

} // namespace

QString ImageExporterPng::defaultFileName() const { return QStringLiteral("out.png"); }

void ImageExporterPng::write(const Settings& settings, const PackedTexture& texture) {
    if (isRefused(settings.outputFormat()))
        throw Error(Error::TextureFile,
                    QStringLiteral("This texture format can not be used with png/jpg/bmp."));
    const QImage sheet = renderTexture(settings, texture);
    OutputFile output(fileName());
    if (!output.open()) // as the toolkit's writer would say it
        fail(fileName(), QStringLiteral("Cannot open device for writing: %1").arg(output.errorString()));
    const QByteArray file = endsIn(fileName(), ".png") ? encodeSheetPng(sheet) : QByteArray();
    if (file.isEmpty())
        writeByToolkit(output, fileName(), sheet, settings);
    else if (output.device().write(file) != file.size())
        fail(fileName(), output.errorString());
    if (!output.commit())
        fail(fileName(), output.errorString());
}
