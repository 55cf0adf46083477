#include "SmartUpdate.h"

#include "OutputFile.h"
#include "Settings.h"
#include "TextDate.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
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

/// In pieces that stay in the processor's cache: data files have megabytes.
bool holds(QFile& file, const QByteArray& text) {
    constexpr qint64 pieceSize = 1 << 16;
    QByteArray window;
    for (QByteArray piece = file.read(pieceSize); !piece.isEmpty(); piece = file.read(pieceSize)) {
        window = window.right(text.size() - 1) + piece;
        if (window.contains(text))
            return true;
    }
    return false;
}

QByteArray programDate() {
    const QFileInfo program(QCoreApplication::applicationFilePath());
    return textDate(program.lastModified().toMSecsSinceEpoch());
}

} // namespace

QString token(const Settings& settings, const QByteArray& sourcesText, const QString& exporterVersion) {
    QCryptographicHash hash(QCryptographicHash::Md5);
    for (const QByteArray& part :
         {settings.toXml().toUtf8(), programDate(), QCoreApplication::applicationVersion().toUtf8(),
          sourcesText, exporterVersion.toUtf8()})
        hash.addData(part);
    return QStringLiteral("$Sorvane:SmartUpdate:%1$").arg(QString::fromLatin1(hash.result().toHex()));
}

bool isCurrent(const QString& dataFile, const QString& textureFile, const QString& token) {
    if (!QFile::exists(dataFile) || !QFile::exists(textureFile))
        return false;
    QFile file(dataFile);
    // A device or a pipe could be read for ever, and holds no earlier publish.
    if (!QFileInfo(dataFile).isFile() || !file.open(QIODevice::ReadOnly))
        return false;
    return holds(file, token.toLatin1());
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
