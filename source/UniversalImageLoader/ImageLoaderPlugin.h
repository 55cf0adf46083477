#pragma once

#include "ImageLoaderOption.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace QtUniversalImageLoader {

class ImageLoader;
class ImageLoaderPluginPrivate;

/// A family of file formats. Plug-ins hold no state between calls: any thread may call, several at once.
class ImageLoaderPlugin {
public:
    /// Key of the save options under which the loader hands on the format that its caller asked for (an
    /// extension without dot, as given). Not among optionList(): nobody sets it by hand.
    static const QString formatKey;

    /// `extensions` in lower case without leading dot, in the order of their selection; one may hold a dot
    /// ("pvr.ccz"). A plug-in that is `registered` leaves the loader's table when it is destroyed.
    ImageLoaderPlugin(const QStringList& extensions, const QString& name, bool registered);
    virtual ~ImageLoaderPlugin();

    /// Writes the image. False on failure.
    virtual bool save(const QString& path, const QImage& image,
                      const QHash<QString, QVariant>& options) const = 0;

    /// Reads the file into `*image`. `*format` receives the format's short name, `*options` what was learned
    /// about the file; both may be null. False on failure and for a null `image`. Larger images than
    /// ImageLimits allows are refused before memory is taken.
    virtual bool load(const QString& path, QImage* image, QString* format,
                      QHash<QString, QVariant>* options) const = 0;

    /// What save() understands.
    virtual QList<ImageLoaderOption> optionList() const = 0;

    virtual bool canRead() const = 0;
    virtual bool canWrite() const = 0;

    /// Extension to description for people.
    virtual QMap<QString, QString> formats() const = 0;

    const QStringList& extensions() const;
    const QString& name() const;

private:
    friend class ImageLoader;

    const std::unique_ptr<ImageLoaderPluginPrivate> m_private;
};

} // namespace QtUniversalImageLoader
