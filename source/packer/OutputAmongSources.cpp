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

QString sourceFolderOf(const QString& textureFile, const Settings& settings) {
    if (textureFile.isEmpty())
        return {};
    const QString path = QDir::cleanPath(QFileInfo(textureFile).absoluteFilePath());
    if (!isScanned(path) || isIgnored(path, settings))
        return {};
    for (const GFileName& entry : settings.fileList()) {
        const QFileInfo source(entry.path());
        if (source.isDir() && path.startsWith(QDir::cleanPath(source.absoluteFilePath()) + QLatin1Char('/')))
            return entry.path();
    }
    return {};
}
