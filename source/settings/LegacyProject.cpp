#include "LegacyProject.h"

#include "Error.h"
#include "LegacySettings.h"
#include "LegacyStream.h"
#include "LegacyValues.h"
#include "product.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

// A hundred times what a project of that generation comes to. The caller hands over every file that isn't
// XML.
constexpr qint64 largestFile = 64 * 1024 * 1024;

// Nobody's version text is longer; it goes into a message.
constexpr int longestVersion = 80;

Error formatError() { return Error(Error::Open, QStringLiteral("File format error")); }

Error openError(const QString& fileName) {
    return Error(Error::Open, QStringLiteral("Can't open file %1 for reading:\n").arg(fileName));
}

void checkHeader(LegacyStream& stream, const QString& fileName) {
    if (stream.readString() != QLatin1String("Sorvane"))
        throw formatError();
    const QString version = stream.readString();
    const int major = stream.readInt();
    const int minor = stream.readInt();
    stream.readInt(); // the third number never told formats apart
    if (major != 1 || minor > 0)
        throw Error(Error::Open,
                    QStringLiteral("Can't open file %1 for reading:\nFile was created with incompatible "
                                   "Sorvane Version %2\nPlease check %3 for an update!")
                        .arg(fileName, version.left(longestVersion), QLatin1String(product::homePage)));
}

/// All values or none: one fault, and every value is the default, as the toolkit empties a hash that it
/// can't read to its end.
LegacyValues readValues(LegacyStream& stream) {
    LegacyValues values;
    // The count is only believed as far as there are bytes.
    const quint32 count = stream.readUInt();
    for (quint32 i = 0; i < count && !stream.failed(); ++i) {
        const QString key = stream.readString();
        values.take(key, stream.readVariant());
    }
    return stream.failed() ? LegacyValues() : values;
}

QString absolutePath(const QDir& base, const QString& path) {
    return QDir::cleanPath(base.absoluteFilePath(path));
}

void makePathsAbsolute(LegacyValues& values, const QDir& base) {
    for (const char* key : {"textureFileName", "dataFileName", "andengine-java"}) {
        const QString path = values.text(key);
        if (!path.isEmpty())
            values.take(QLatin1String(key), absolutePath(base, path));
    }
    QStringList files = values.list("fileList");
    for (QString& file : files)
        file = absolutePath(base, file);
    values.take(QStringLiteral("fileList"), files);
}

void checkSuffixes(const LegacyValues& values) {
    const QString texture = values.text("textureFileName");
    if (!texture.isEmpty() && !legacyTextureFormat(texture))
        throw Error(Error::FileSuffix, QStringLiteral("Texture file format not supported. Supported formats "
                                                      "are .png .jpg .pvr .pvr.ccz .pvr.gz"));
    const QString java = values.text("andengine-java");
    if (!java.isEmpty() && !java.endsWith(QLatin1String(".java")))
        throw Error(Error::FileSuffix, QStringLiteral("Java file name must end with .java"));
}

} // namespace

std::unique_ptr<Settings> readLegacyProject(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw openError(fileName);
    if (file.size() > largestFile)
        throw formatError();
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        throw openError(fileName);
    return parseLegacyProject(bytes, fileName);
}

std::unique_ptr<Settings> parseLegacyProject(const QByteArray& bytes, const QString& fileName) {
    LegacyStream stream(bytes);
    checkHeader(stream, fileName);
    LegacyValues values = readValues(stream);
    makePathsAbsolute(values, QFileInfo(fileName).absoluteDir());
    checkSuffixes(values);
    return settingsOfLegacyValues(values);
}
