#pragma once

#include "ImageLoaderPlugin.h"

class QIODevice;

namespace QtUniversalImageLoader {

/// A plug-in of one of our own formats, which reads and writes a device. A file appears under its name only
/// when it is complete.
class FormatPlugin : public ImageLoaderPlugin {
public:
    bool save(const QString& path, const QImage& image, const QHash<QString, QVariant>& options) const final;
    bool load(const QString& path, QImage* image, QString* format,
              QHash<QString, QVariant>* options) const final;

    QList<ImageLoaderOption> optionList() const override { return {}; }
    bool canRead() const final { return true; }
    bool canWrite() const override { return true; }
    QMap<QString, QString> formats() const final { return m_formats; }

protected:
    using Options = QHash<QString, QVariant>;

    /// `format` is the short name that load() reports, `formats` what formats() gives.
    FormatPlugin(const QStringList& extensions, const QString& name, const QString& format,
                 const QMap<QString, QString>& formats);

    /// The picture, or null. `options` may be changed: the caller gets them if there is a picture.
    virtual QImage read(QIODevice& device, const QString& path, Options& options) const = 0;

    /// False if the picture can't be written; then no file stays.
    virtual bool write(QIODevice& device, const QImage& image, const QString& path,
                       const Options& options) const = 0;

    /// A file that can't be opened, for the log.
    virtual void logUnopened(const QString& path, bool toWrite) const;

private:
    const QString m_format;
    const QMap<QString, QString> m_formats;
};

} // namespace QtUniversalImageLoader
