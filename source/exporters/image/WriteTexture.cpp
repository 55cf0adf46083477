#include "WriteTexture.h"

#include "Error.h"
#include "ImageExporterFactory.h"
#include "OutputFile.h"

#include <QDir>
#include <QFileInfo>

namespace {

void write(const Settings& settings, const PackedTexture& texture, const QString& fileName) {
    const auto exporter = makeImageExporter(settings.textureFormat(), settings.pngOptimizationLevel());
    exporter->setFileName(fileName);
    exporter->write(settings, texture);
    if (!QFile::exists(fileName))
        throw Error(Error::TextureFile, QStringLiteral("Failed to write file %1").arg(fileName));
}

} // namespace

void writeTexture(const Settings& settings, const PackedTexture& texture,
                  const std::function<void(int, const QString&)>& activity) {
    const QString fileName = settings.textureFileName();
    // Without its folder the file can't be opened, and the error then tells why.
    QDir().mkpath(QFileInfo(fileName).absolutePath());
    activity(1, QStringLiteral("Writing sprite sheet to %1").arg(fileName));
    try {
        write(settings, texture, fileName);
    } catch (const Error&) {
        OutputFile::remove(fileName);
        throw;
    }
}
