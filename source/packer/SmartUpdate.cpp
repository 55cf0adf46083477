#include "SmartUpdate.h"

#include "OutputFile.h"
#include "Settings.h"
#include "TextDate.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace SmartUpdate {

namespace {

/// The note's file. The path of the data file may hold anything, so its hash makes the name.
QString noteFile(const QString& dataFile) {
    const QByteArray path = QFileInfo(dataFile).absoluteFilePath().toUtf8();
    const QByteArray name = QCryptographicHash::hash(path, QCryptographicHash::Sha1).toHex();
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + QLatin1String("/published/") +
           QString::fromLatin1(name);
}

} // namespace

QString token(const Settings& settings, const QString& sourcesText, const QString& exporterVersion) {
    const QString text = settings.toXml() +
                         textDate(QFileInfo(QCoreApplication::applicationFilePath()).lastModified()) +
                         QCoreApplication::applicationVersion() + sourcesText + exporterVersion;
    const QByteArray digest = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Md5).toHex();
    return QStringLiteral("$Sorvane:SmartUpdate:%1$").arg(QString::fromLatin1(digest));
}

bool isCurrent(const QString& dataFile, const QString& textureFile, const QString& token) {
    if (!QFile::exists(dataFile) || !QFile::exists(textureFile))
        return false;
    QFile file(dataFile);
    // A device or a pipe could be read for ever, and holds no earlier publish.
    if (!QFileInfo(dataFile).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    return QString::fromUtf8(file.readAll()).contains(token);
}

void remember(const QString& dataFile, const QString& token) {
    const QString name = noteFile(dataFile);
    if (remembers(dataFile, token) || !QDir().mkpath(QFileInfo(name).absolutePath()))
        return;
    OutputFile note(name);
    if (note.open() && note.device().write(token.toLatin1()) == token.size())
        note.commit();
}

void forget(const QString& dataFile) { QFile::remove(noteFile(dataFile)); }

bool remembers(const QString& dataFile, const QString& token) {
    QFile note(noteFile(dataFile));
    return note.open(QIODevice::ReadOnly) && note.readAll() == token.toLatin1();
}

} // namespace SmartUpdate
