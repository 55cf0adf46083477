#include "PVRLoaderPlugin.h"

#include "PluginImage.h"
#include "PvrReader.h"
#include "PvrWriter.h"

#include <QCoreApplication>

#include <algorithm>
#include <iterator>

namespace QtUniversalImageLoader {

namespace {

struct Container {
    const char* ending;
    QByteArray (*wrap)(const QByteArray& file);
    QImage (*read)(QIODevice& device);
};

QByteArray plain(const QByteArray& file) { return file; }

constexpr Container containers[] = {{".pvr", plain, readPvr},
                                    {".pvrtc", plain, readPvr},
                                    {".pvr.ccz", cczContainer, readPvrCcz},
                                    {".pvr.gz", gzipStream, readPvrGz}};

/// Null for a path with another ending.
const Container* containerOf(const QString& path) {
    const QString lower = path.toLower();
    const auto container =
        std::find_if(std::begin(containers), std::end(containers),
                     [&](const Container& c) { return lower.endsWith(QLatin1String(c.ending)); });
    return container == std::end(containers) ? nullptr : container;
}

QString translated(const char* text) { return QCoreApplication::translate("PVRLoaderPlugin", text); }

ImageLoaderOption flag(const char* key, const char* name) {
    return {QString::fromLatin1(key), translated(name), {}, ImageLoaderOption::Boolean, false, {}};
}

ImageLoaderOption pixelTypes() {
    struct Row {
        const char* key;
        const char* name;
        const char* description;
        int value;
    };
    static constexpr Row rows[] = {
        {"RGB565", "RGB 565", "RGB data, 5 bits for red and blue channels, 6 bits for green", 19},
        {"RGB888", "RGB 888", "RGB data, 8 bits for each channel", 21},
        {"RGBA4444", "RGBA 4444", "RGBA data, 4 bits for each channel", 16},
        {"RGBA8888", "RGBA 8888", "RGBA data, 8 bits for each channel", 18},
        {"RGBA5551", "RGBA 5551", "RGBA data, 5 bits for each color channel, one bit for alpha channel", 17},
        {"BGRA8888", "BGRA 8888", "BGRA data, 8 bits for each channel", 26},
        {"PVRTC2", "PVRTC 2", "PVRTC compression format, 2 bits per pixel", 24},
        {"PVRTC4", "PVRTC 4", "PVRTC compression format, 4 bits per pixel", 25},
        {"AI88", "AI 88", "16 bit alpha and intensity format", 23},
    };
    ImageLoaderOption option{QStringLiteral("pixelType"),
                             translated("Pixel type"),
                             translated("Pixel storage format and compression"),
                             ImageLoaderOption::Enumeration,
                             {},
                             {}};
    for (const Row& row : rows)
        option.values.append(
            {QString::fromLatin1(row.key), translated(row.name), translated(row.description), row.value});
    return option;
}

} // namespace

PVRLoaderPlugin::PVRLoaderPlugin()
    : FormatPlugin({QStringLiteral("pvrtc"), QStringLiteral("pvr.gz"), QStringLiteral("pvr.ccz"),
                    QStringLiteral("pvr")},
                   QStringLiteral("PVR"), QStringLiteral("pvr"),
                   {{QStringLiteral("pvr"), QStringLiteral("PowerVR image format")},
                    {QStringLiteral("pvrtc"), QStringLiteral("PowerVR image format")},
                    {QStringLiteral("pvr.ccz"), QStringLiteral("PowerVR image format (zlib)")},
                    {QStringLiteral("pvr.gz"), QStringLiteral("PowerVR image format (gz)")}}) {}

QImage PVRLoaderPlugin::read(QIODevice& device, const QString& path, Options& options) const {
    options.clear();
    const Container* container = containerOf(path);
    return container ? container->read(device) : QImage();
}

bool PVRLoaderPlugin::write(QIODevice& device, const QImage& image, const QString& path,
                            const Options& options) const {
    const Container* container = containerOf(path);
    if (!container)
        return false;
    const QByteArray file = pvr2Data(image, options);
    return !file.isEmpty() && PluginImage::writeAll(device, container->wrap(file));
}

QList<ImageLoaderOption> PVRLoaderPlugin::optionList() const {
    return {pixelTypes(), flag("premultipliedAlpha", "Premultiplied alpha"),
            flag("flipped", "Image flipped")};
}

} // namespace QtUniversalImageLoader
