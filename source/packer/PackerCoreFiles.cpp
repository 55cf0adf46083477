// What the core does with the output files: the smart update test, their names and their writing.

#include "PackerCore.h"

#include "DataExporter.h"
#include "DataExporterRegistry.h"
#include "Error.h"
#include "OutputFile.h"
#include "Settings.h"
#include "SmartUpdate.h"
#include "WriteTexture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

QString PackerCore::tokenFor(const QByteArray& sourcesText) const {
    const DataExporter* found = DataExporterRegistry::instance().find(m_settings->dataFormat());
    return SmartUpdate::token(*m_settings, sourcesText, found ? found->versionString() : QString());
}

bool PackerCore::upToDate() {
    m_smartUpdateKey = tokenFor(m_tree.hashText());
    return SmartUpdate::isCurrent(m_settings->dataFileName(), m_settings->textureFileName(),
                                  m_smartUpdateKey);
}

bool PackerCore::knownUpToDate() {
    const QString dataFile = m_settings->dataFileName();
    const QString token = tokenFor(m_tree.currentHashText());
    return SmartUpdate::remembers(dataFile, token) &&
           SmartUpdate::isCurrent(dataFile, m_settings->textureFileName(), token);
}

void PackerCore::prepareOutputFiles() {
    // An unknown format is told of before anything is removed.
    const DataExporter& writer = exporter();
    if (m_settings->dataFileName().isEmpty())
        m_settings->setDataFileName(writer.defaultFileName());
    if (m_settings->textureFileName().isEmpty())
        m_settings->setTextureFileName(QStringLiteral("out.png"));
    OutputFile::remove(m_settings->textureFileName());
    OutputFile::remove(m_settings->dataFileName());
}

void PackerCore::writeTexture(const PackedTexture& texture) {
    ::writeTexture(*m_settings, texture,
                   [this](int level, const QString& message) { emit activity(level, message); });
}

void PackerCore::writeData(const PackedTexture& texture) {
    DataExporter& writer = exporter();
    const QString fileName = m_settings->dataFileName();
    QDir().mkpath(QFileInfo(fileName).absolutePath());
    writer.setFileName(fileName);
    emit activity(
        1, QStringLiteral("Writing data for %1 to %2").arg(m_settings->dataFormat(), writer.fileName()));
    // Formats outlive the image cache's users: an image that one still held would stay in its temporary file.
    const auto release = qScopeGuard([&writer] { writer.setInput(nullptr, PackedTexture()); });
    try {
        writer.setInput(m_settings, texture);
        writer.setSmartUpdateKey(m_smartUpdateKey);
        for (const QString& sentence : writer.duplicateNames())
            emit warning(sentence);
        writer.write();
        if (!QFile::exists(fileName))
            throw Error(Error::DataFile, QStringLiteral("Failed to write file %1").arg(fileName));
    } catch (const Error&) {
        OutputFile::remove(fileName);
        throw;
    }
}
