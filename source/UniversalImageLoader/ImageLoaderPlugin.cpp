#include "ImageLoaderPlugin.h"

#include "ImageLoader.h"
#include "ImageLoaderPluginPrivate.h"

namespace QtUniversalImageLoader {

const QString ImageLoaderPlugin::formatKey = QStringLiteral("saveFormat");

ImageLoaderPlugin::ImageLoaderPlugin(const QStringList& extensions, const QString& name, bool registered)
    : m_private(std::make_unique<ImageLoaderPluginPrivate>(this, extensions, name, registered)) {}

ImageLoaderPlugin::~ImageLoaderPlugin() {
    if (m_private->registered && m_private->loader)
        m_private->loader->remove(this);
}

const QStringList& ImageLoaderPlugin::extensions() const { return m_private->extensions; }

const QString& ImageLoaderPlugin::name() const { return m_private->name; }

} // namespace QtUniversalImageLoader
