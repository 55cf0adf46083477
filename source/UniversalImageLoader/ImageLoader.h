#pragma once

#include "ImageLoaderPlugin.h"

#include <memory>

/// The front of the image file library.
namespace QtUniversalImageLoader {

/// Owns the fixed, ordered table of plug-ins and picks one by a file's extension. Reports by results only:
/// false or a null image, and the words for the user are the caller's (a plug-in's save() may throw Error
/// where it says so). Any thread may call, several at once.
class ImageLoader {
public:
    ImageLoader();
    virtual ~ImageLoader();

    /// The loader of the process, made at first use. With `destroy` it is deleted and the result is null;
    /// nobody may be using it then.
    static ImageLoader* instance(bool destroy = false);

    /// The table, in selection order. Owned by the loader.
    QList<ImageLoaderPlugin*> plugins() const;

    /// The plug-ins' extensions in table order, with repetitions.
    QStringList allExtensions() const;

    /// Extension to description; of two plug-ins with one extension the later one describes it.
    QMap<QString, QString> readableFormats() const;
    QMap<QString, QString> writableFormats() const;

    /// Whether some plug-in reads, or writes, files of that extension (without dot, any case).
    bool canRead(const QString& extension) const;
    bool canWrite(const QString& extension) const;

    /// The image of the file, picked by its extension alone; null on any failure.
    QImage load(const QString& path) const;

    /// The same with what is known of the file, see ImageLoaderPlugin::load(). A failure leaves `*image`
    /// null.
    bool load(const QString& path, QString* format, QImage* image, QHash<QString, QVariant>* options) const;

    /// Writes the image in the format (extension without dot) to a path that may have any name.
    bool save(const QString& path, const QString& format, const QImage& image,
              const QHash<QString, QVariant>& options = {}) const;

protected:
    /// Takes the plug-in as the last of the table. For construction only: users see a table that doesn't
    /// change.
    void add(ImageLoaderPlugin* plugin);

private:
    friend class ImageLoaderPlugin;

    struct Private;

    const ImageLoaderPlugin* select(const QString& name, bool requireRead, bool requireWrite) const;
    void remove(ImageLoaderPlugin* plugin);

    const std::unique_ptr<Private> m_private;
};

} // namespace QtUniversalImageLoader
