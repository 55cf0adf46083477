#include "OutputAmongSources.h"

#include "ImageLoader.h"
#include "Patterns.h"
#include "Settings.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

/// A scan of a folder takes up files by the suffixes that can be read.
bool isScanned(const QString& path) {
    const QMap<QString, QString> formats = QtUniversalImageLoader::ImageLoader::instance()->readableFormats();
    return std::any_of(formats.keyBegin(), formats.keyEnd(), [&path](const QString& extension) {
        return path.endsWith(QLatin1Char('.') + extension, Qt::CaseInsensitive);
    });
}

bool isIgnored(const QString& path, const Settings& settings) {
    const QStringList patterns = settings.ignoreFileList();
    return std::any_of(patterns.cbegin(), patterns.cend(),
                       [&path](const QString& pattern) { return WildcardPattern(pattern).matches(path); });
}

} // namespace

QString outputAmongSources(const Settings& settings) {
    // The name that a sheet without one will get.
    const QString texture =
        settings.textureFileName().isEmpty() ? QStringLiteral("out.png") : settings.textureFileName().path();
    const QString path = QDir::cleanPath(QFileInfo(texture).absoluteFilePath());
    if (isIgnored(path, settings))
        return {};
    for (const GFileName& entry : settings.fileList()) {
        const QString source = QDir::cleanPath(QFileInfo(entry.path()).absoluteFilePath());
        if (source == path)
            return QStringLiteral(
                       "The texture %1 is one of the source images, and is packed and then overwritten; "
                       "choose another name for it with --sheet")
                .arg(texture);
        if (isScanned(path) && QFileInfo(source).isDir() && path.startsWith(source + QLatin1Char('/')))
            return QStringLiteral(
                       "The texture %1 lies inside the source folder %2 and is packed like any other image "
                       "there; leave it out with --ignore-files")
                .arg(texture, entry.path());
    }
    return {};
}
