#include "PPMLoaderPlugin.h"

#include "PluginImage.h"
#include "PpmFormat.h"

#include <QCoreApplication>

#include <optional>

using UniversalImageLoader::PPM_Format;

namespace QtUniversalImageLoader {

namespace {

const QString formatOption = QStringLiteral("format");

QString translated(const char* text) { return QCoreApplication::translate("PPMLoaderPlugin", text); }

std::optional<PPM_Format> flavourOf(const QVariant& value) {
    if (value.userType() == qMetaTypeId<PPM_Format>())
        return value.value<PPM_Format>();
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    if (!isNumber || (number != UniversalImageLoader::binary && number != UniversalImageLoader::ascii))
        return {};
    return static_cast<PPM_Format>(number);
}

} // namespace

PPMLoaderPlugin::PPMLoaderPlugin() : ImageLoaderPlugin({QStringLiteral("ppm")}, QStringLiteral("PPM"), true) {
    qRegisterMetaType<PPM_Format>("UniversalImageLoader::PPM_Format");
}

bool PPMLoaderPlugin::save(const QString& path, const QImage& image,
                           const QHash<QString, QVariant>& options) const {
    const std::optional<PPM_Format> flavour = flavourOf(options.value(formatOption));
    return flavour &&
           PluginImage::save(path, [&](QIODevice& device) { return writePpm(device, image, *flavour); });
}

bool PPMLoaderPlugin::load(const QString& path, QImage* image, QString* format,
                           QHash<QString, QVariant>* options) const {
    PPM_Format flavour = UniversalImageLoader::binary;
    if (!PluginImage::load(path, image, [&](QIODevice& device) { return readPpm(device, &flavour); }))
        return false;
    if (format)
        *format = QStringLiteral("ppm");
    if (options)
        options->insert(formatOption, QVariant::fromValue(flavour));
    return true;
}

QList<ImageLoaderOption> PPMLoaderPlugin::optionList() const {
    const auto choice = [](const char* key, const char* name, const char* description, PPM_Format value) {
        return ImageLoaderOptionValue{QString::fromLatin1(key), translated(name), translated(description),
                                      static_cast<int>(value)};
    };
    return {{formatOption,
             translated("Format"),
             translated("Internal format used to store data"),
             ImageLoaderOption::Enumeration,
             static_cast<int>(UniversalImageLoader::binary),
             {choice("binary", "Binary", "Color data stored as binary values", UniversalImageLoader::binary),
              choice("ascii", "ASCII", "Color data stored as decimal numbers in ASCII",
                     UniversalImageLoader::ascii)}}};
}

QMap<QString, QString> PPMLoaderPlugin::formats() const {
    return {{QStringLiteral("ppm"), QStringLiteral("Netpbm color image format")}};
}

} // namespace QtUniversalImageLoader
