#include "FormatPlugin.h"

#include "OutputFile.h"

#include <QFile>

namespace QtUniversalImageLoader {

FormatPlugin::FormatPlugin(const QStringList& extensions, const QString& name, const QString& format,
                           const QMap<QString, QString>& formats)
    : ImageLoaderPlugin(extensions, name, true), m_format(format), m_formats(formats) {}

bool FormatPlugin::save(const QString& path, const QImage& image, const Options& options) const {
    if (!canWrite())
        return false;
    OutputFile file(path);
    if (!file.open()) {
        logUnopened(path, true);
        return false;
    }
    return write(file.device(), image, path, options) && file.commit();
}

bool FormatPlugin::load(const QString& path, QImage* image, QString* format, Options* options) const {
    if (!image)
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        logUnopened(path, false);
        return false;
    }
    Options learned = options ? *options : Options();
    *image = read(file, path, learned);
    if (image->isNull())
        return false;
    if (format)
        *format = m_format;
    if (options)
        *options = learned;
    return true;
}

void FormatPlugin::logUnopened(const QString&, bool) const {}

} // namespace QtUniversalImageLoader
