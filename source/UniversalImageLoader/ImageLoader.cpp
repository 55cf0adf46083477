#include "ImageLoader.h"

#include "ImageLoaderPluginPrivate.h"
#include "PKMLoaderPlugin.h"
#include "PNGLoaderPlugin.h"
#include "PPMLoaderPlugin.h"
#include "PSDLoaderPlugin.h"
#include "PVRLoaderPlugin.h"
#include "QtFallbackLoaderPlugin.h"
#include "TGALoaderPlugin.h"
#include "TIFFLoaderPlugin.h"

#include <mutex>
#include <type_traits>

namespace QtUniversalImageLoader {

struct ImageLoader::Private {
    explicit Private(ImageLoader* loader) : q(loader) {}

    ImageLoader* const q;
    QList<ImageLoaderPlugin*> plugins;
};

namespace {

using MakePlugin = ImageLoaderPlugin* (*)(const ImageLoader&);

// A plug-in that has to know what those before it can do takes the loader.
template <class Plugin>
ImageLoaderPlugin* row(const ImageLoader& loader) {
    if constexpr (std::is_constructible_v<Plugin, const ImageLoader&>)
        return new Plugin(loader);
    else
        return new Plugin;
}

// The order is the selection priority. The fallback is the last: it takes what the others leave.
constexpr MakePlugin table[] = {
    row<TGALoaderPlugin>, row<PPMLoaderPlugin>,  row<PKMLoaderPlugin>, row<PSDLoaderPlugin>,
    row<PVRLoaderPlugin>, row<TIFFLoaderPlugin>, row<PNGLoaderPlugin>, row<QtFallbackLoaderPlugin>,
};

QString suffixOf(const QString& extension) { return QLatin1Char('.') + extension; }

} // namespace

ImageLoader::ImageLoader() : m_private(std::make_unique<Private>(this)) {
    for (const MakePlugin makePlugin : table)
        add(makePlugin(*this));
}

ImageLoader::~ImageLoader() {
    const QList<ImageLoaderPlugin*> plugins = m_private->plugins;
    for (const ImageLoaderPlugin* plugin : plugins)
        plugin->m_private->loader = nullptr;
    qDeleteAll(plugins);
}

ImageLoader* ImageLoader::instance(bool destroy) {
    static std::mutex mutex;
    static ImageLoader* loader = nullptr;
    const std::lock_guard<std::mutex> lock(mutex);
    if (destroy) {
        delete loader;
        loader = nullptr;
    } else if (!loader) {
        loader = new ImageLoader;
    }
    return loader;
}

QList<ImageLoaderPlugin*> ImageLoader::plugins() const { return m_private->plugins; }

QStringList ImageLoader::allExtensions() const {
    QStringList extensions;
    for (const ImageLoaderPlugin* plugin : qAsConst(m_private->plugins))
        extensions += plugin->extensions();
    return extensions;
}

namespace {

QMap<QString, QString> formatsOf(const QList<ImageLoaderPlugin*>& plugins,
                                 bool (ImageLoaderPlugin::*able)() const) {
    QMap<QString, QString> all;
    for (const ImageLoaderPlugin* plugin : plugins) {
        if (!(plugin->*able)())
            continue;
        const QMap<QString, QString> formats = plugin->formats();
        for (auto format = formats.begin(); format != formats.end(); ++format)
            all.insert(format.key(), format.value());
    }
    return all;
}

} // namespace

QMap<QString, QString> ImageLoader::readableFormats() const {
    return formatsOf(m_private->plugins, &ImageLoaderPlugin::canRead);
}

QMap<QString, QString> ImageLoader::writableFormats() const {
    return formatsOf(m_private->plugins, &ImageLoaderPlugin::canWrite);
}

bool ImageLoader::canRead(const QString& extension) const {
    const ImageLoaderPlugin* plugin = select(suffixOf(extension), true, false);
    return plugin && plugin->canRead();
}

bool ImageLoader::canWrite(const QString& extension) const {
    const ImageLoaderPlugin* plugin = select(suffixOf(extension), false, true);
    return plugin && plugin->canWrite();
}

QImage ImageLoader::load(const QString& path) const {
    QImage image;
    return load(path, nullptr, &image, nullptr) ? image : QImage();
}

bool ImageLoader::load(const QString& path, QString* format, QImage* image,
                       QHash<QString, QVariant>* options) const {
    if (image)
        *image = QImage();
    const ImageLoaderPlugin* plugin = select(path, true, false);
    if (!plugin || !plugin->canRead())
        return false;
    if (plugin->load(path, image, format, options))
        return true;
    if (image)
        *image = QImage();
    return false;
}

bool ImageLoader::save(const QString& path, const QString& format, const QImage& image,
                       const QHash<QString, QVariant>& options) const {
    const ImageLoaderPlugin* plugin = select(suffixOf(format), false, true);
    if (!plugin || !plugin->canWrite())
        return false;
    QHash<QString, QVariant> all = options;
    all.insert(ImageLoaderPlugin::formatKey, format);
    return plugin->save(path, image, all);
}

const ImageLoaderPlugin* ImageLoader::select(const QString& name, bool requireRead, bool requireWrite) const {
    const QString lower = name.toLower();
    const ImageLoaderPlugin* first = nullptr;
    for (const ImageLoaderPlugin* plugin : qAsConst(m_private->plugins))
        for (const QString& extension : plugin->extensions()) {
            if (!lower.endsWith(suffixOf(extension)))
                continue;
            if ((!requireRead || plugin->canRead()) && (!requireWrite || plugin->canWrite()))
                return plugin;
            // A match that lacks the ability is the answer only if no other plug-in matches with it.
            if (!first)
                first = plugin;
        }
    return first;
}

void ImageLoader::add(ImageLoaderPlugin* plugin) {
    plugin->m_private->loader = this;
    m_private->plugins.append(plugin);
}

void ImageLoader::remove(ImageLoaderPlugin* plugin) { m_private->plugins.removeOne(plugin); }

} // namespace QtUniversalImageLoader
