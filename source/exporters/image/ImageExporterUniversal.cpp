#include "ImageExporterUniversal.h"

#include "Error.h"
#include "PPM_Format.h"
#include "SaveAside.h"

namespace {

struct FileFormat {
    QString name;
    QHash<QString, QVariant> options;
};

FileFormat ppm(UniversalImageLoader::PPM_Format flavour) {
    return {QStringLiteral("ppm"), {{QStringLiteral("format"), QVariant::fromValue(flavour)}}};
}

FileFormat fileFormat(const Settings& settings) {
    using Format = SettingsBase::TextureFormat;
    switch (settings.textureFormat()) {
    case Format::png:
        return {QStringLiteral("png"),
                {{QStringLiteral("PresetOptimization"), static_cast<int>(settings.pngOptimizationLevel())}}};
    case Format::tga:
        return {QStringLiteral("tga"), {}};
    case Format::pkm:
        return {QStringLiteral("pkm"), {}};
    case Format::ppm_ascii:
        return ppm(UniversalImageLoader::ascii);
    case Format::ppm_binary:
        return ppm(UniversalImageLoader::binary);
    default:
        throw Error(Error::TextureFile, QStringLiteral("ImageExporterUniversal can't write that format."));
    }
}

} // namespace

QString ImageExporterUniversal::defaultFileName() const { return QStringLiteral("out.png"); }

void ImageExporterUniversal::write(const Settings& settings, const PackedTexture& texture) {
    const QImage sheet = renderTexture(settings, texture);
    const FileFormat format = fileFormat(settings);
    if (!saveAside(fileName(), format.name, sheet, format.options))
        throw Error(Error::TextureFile, QStringLiteral("Failed to write %1").arg(fileName()));
}
