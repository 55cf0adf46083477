#include "PPMLoaderPlugin.h"

#include "PpmFormat.h"

#include <QCoreApplication>

#include <optional>

using UniversalImageLoader::PPM_Format;

namespace QtUniversalImageLoader {

namespace {

const QString formatOption = QStringLiteral("format");

QString translated(const char* text) { return QCoreApplication::translate("PPMLoaderPlugin", text); }

std::optional<PPM_Format> flavourOf(const QVariant& value) {
    const bool isFlavour = value.userType() == qMetaTypeId<PPM_Format>();
    bool isNumber = isFlavour;
    const int number = isFlavour ? int{value.value<PPM_Format>()} : value.toInt(&isNumber);
    if (!isNumber || (number != UniversalImageLoader::binary && number != UniversalImageLoader::ascii))
        return {};
    return static_cast<PPM_Format>(number);
}

} // namespace

PPMLoaderPlugin::PPMLoaderPlugin()
    : FormatPlugin({QStringLiteral("ppm")}, QStringLiteral("PPM"), QStringLiteral("ppm"),
                   {{QStringLiteral("ppm"), QStringLiteral("Netpbm color image format")}}) {
    qRegisterMetaType<PPM_Format>("UniversalImageLoader::PPM_Format");
}

QImage PPMLoaderPlugin::read(QIODevice& device, const QString&, Options& options) const {
    PPM_Format flavour = UniversalImageLoader::binary;
    const QImage image = readPpm(device, &flavour);
    options.insert(formatOption, QVariant::fromValue(flavour));
    return image;
}

bool PPMLoaderPlugin::write(QIODevice& device, const QImage& image, const QString&,
                            const Options& options) const {
    const std::optional<PPM_Format> flavour = flavourOf(options.value(formatOption));
    return flavour && writePpm(device, image, *flavour);
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

} // namespace QtUniversalImageLoader
