#include "SaveAside.h"

#include "ImageLoader.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>

namespace {

/// Unlike QFile::rename() this replaces what has the name already, in one step.
bool replace(const QString& from, const QString& to) {
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

} // namespace

bool saveAside(const QString& fileName, const QString& format, const QImage& image,
               const QHash<QString, QVariant>& options) {
    const auto* loader = QtUniversalImageLoader::ImageLoader::instance();
    const QFileInfo target(fileName);
    if (target.exists() && !target.isFile())
        return loader->save(fileName, format, image, options);
    const QTemporaryDir folder(target.absolutePath() + QStringLiteral("/.sorvane-XXXXXX"));
    // Where no folder can be made there may still be a file that can be written; if not, the plug-in knows
    // what to say.
    if (!folder.isValid())
        return loader->save(fileName, format, image, options);
    const QString aside = folder.filePath(target.fileName());
    return loader->save(aside, format, image, options) && replace(aside, fileName);
}
