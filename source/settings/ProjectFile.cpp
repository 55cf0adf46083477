// The operations of Settings that read and write project files.

#include "Error.h"
#include "GSerializableReader.h"
#include "GSerializableWriter.h"
#include "GlobalSettings.h"
#include "InPlaceFile.h"
#include "LegacyProject.h"
#include "Settings.h"

#include <QBuffer>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

/// Null if a name holds a character that XML can't: it would be changed without a word.
QByteArray documentOf(const Settings& settings, const QDir& base) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    GSerializableWriter writer(&buffer, base);
    writer.beginDocument();
    settings.write(writer);
    writer.endDocument();
    return writer.hasError() ? QByteArray() : bytes;
}

const char* const unwritableName = ": a name in it has a control character";

} // namespace

void Settings::save(const QString& fileName) {
    const int oldVersion = fileFormatVersion();
    const bool wasDirty = isDirty();
    setFileFormatVersion(1);
    const QByteArray document = documentOf(*this, QFileInfo(fileName).absoluteDir());
    if (document.isNull() || !writeInPlace(fileName, document)) {
        setFileFormatVersion(oldVersion);
        if (!wasDirty)
            setDirty(false);
        throw Error(Error::Save, QStringLiteral("Can't save %1").arg(fileName) +
                                     QLatin1String(document.isNull() ? unwritableName : ""));
    }
    m_fileName = fileName;
    setDirty(false);
}

Settings* Settings::load(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw Error(Error::Open,
                    QStringLiteral("Can't open file %1 for reading: %2\n").arg(fileName, file.errorString()));
    if (file.size() == 0)
        return createDefault();
    std::unique_ptr<Settings> settings;
    if (file.peek(5) == "<?xml")
        settings = parse(file, QFileInfo(fileName).absolutePath());
    else
        settings = readLegacyProject(fileName);
    settings->m_fileName = fileName;
    qDebug().noquote() << fileName;
    return settings.release();
}

Settings* Settings::createDefault() {
    QByteArray stored = GlobalSettings().defaultSettings();
    if (stored.isEmpty())
        return new Settings;
    QBuffer buffer(&stored);
    buffer.open(QIODevice::ReadOnly);
    std::unique_ptr<Settings> settings = parse(buffer, QDir::currentPath());
    settings->setFileList({});
    settings->setTextureFileName(QString());
    settings->setDataFileName(QString());
    settings->andEngine()->setJavaFileName(QString());
    settings->setDirty(false);
    return settings.release();
}

void Settings::saveAsDefault() const {
    const QByteArray document = documentOf(*this, QDir(QDir::currentPath()));
    if (document.isNull())
        throw Error(Error::Save,
                    QStringLiteral("Can't save the default settings") + QLatin1String(unwritableName));
    GlobalSettings().setDefaultSettings(document);
}

QString Settings::toXml() const {
    const QDir base = m_fileName.isEmpty() ? QDir(QDir::currentPath()) : QFileInfo(m_fileName).absoluteDir();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    GSerializableWriter writer(&buffer, base);
    write(writer);
    return QString::fromUtf8(bytes);
}

std::unique_ptr<Settings> Settings::parse(QIODevice& device, const QString& folder) {
    const GSerializableReader reader(device, QDir(folder));
    std::unique_ptr<QObject> object = reader.readObject();
    auto* settings = qobject_cast<Settings*>(object.get());
    if (!settings)
        throw Error(Error::Parse, QStringLiteral("Can't create instance of %1")
                                      .arg(QLatin1String(object->metaObject()->className())));
    object.release();
    std::unique_ptr<Settings> result(settings);
    result->clearFolderNames(QDir::cleanPath(QDir(folder).absolutePath()));
    result->migrate();
    return result;
}

/// A name that wasn't set is stored as an empty element, which reads as the project's folder. No output file
/// can have that name: it means that none is set.
void Settings::clearFolderNames(const QString& folder) {
    if (textureFileName().path() == folder)
        setTextureFileName(QString());
    if (dataFileName().path() == folder)
        setDataFileName(QString());
    if (andEngine()->javaFileName().path() == folder)
        andEngine()->setJavaFileName(QString());
}

void Settings::migrate() {
    if (fileFormatVersion() == 0) {
        using Constraints = AlgorithmSettings::SizeConstraints;
        algorithmSettings()->setSizeConstraints(allowFreeSize() ? Constraints::AnySize : Constraints::POT);
        using TrimMode = SpriteSettings::TrimMode;
        SpriteSettings* sprites = globalSpriteSettings();
        sprites->setTrimMode(sprites->trim()   ? TrimMode::Trim
                             : sprites->crop() ? TrimMode::CropKeepPos
                                               : TrimMode::None);
    }
    setFileFormatVersion(1);
    setDirty(false);
}
