#pragma once

#include <QObject>
#include <QStringList>

namespace QtUniversalImageLoader {

class ImageLoader;
class ImageLoaderPlugin;

/// What a plug-in and the loader that owns it know of each other.
class ImageLoaderPluginPrivate : public QObject {
public:
    ImageLoaderPluginPrivate(ImageLoaderPlugin* plugin, const QStringList& pluginExtensions,
                             const QString& pluginName, bool isRegistered)
        : q(plugin), registered(isRegistered), extensions(pluginExtensions), name(pluginName) {}

    ImageLoaderPlugin* const q;
    ImageLoader* loader = nullptr; ///< null outside the table, and while the loader dies
    const bool registered;
    const QStringList extensions;
    const QString name;
};

} // namespace QtUniversalImageLoader
