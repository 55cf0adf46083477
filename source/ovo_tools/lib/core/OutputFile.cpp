#include "OutputFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

OutputFile::OutputFile(const QString& fileName) {
    const QFileInfo target(fileName);
    m_direct = target.exists() && !target.isFile();
    if (m_direct)
        m_device = std::make_unique<QFile>(fileName);
    else
        m_device = std::make_unique<QSaveFile>(fileName);
}

OutputFile::~OutputFile() = default;

bool OutputFile::open() { return m_device->open(QIODevice::WriteOnly); }

bool OutputFile::commit() {
    // Flushed here, since the rename doesn't look at what the last flush reports.
    const bool written = m_device->flush() && m_device->error() == QFileDevice::NoError;
    if (!written)
        cancel();
    if (m_direct) {
        m_device->close();
        return written;
    }
    return written && static_cast<QSaveFile&>(*m_device).commit();
}

void OutputFile::remove(const QString& fileName) {
    if (!fileName.isEmpty() && QFileInfo(fileName).isFile())
        QFile::remove(fileName);
}

void OutputFile::cancel() {
    if (m_direct)
        m_device->close();
    else
        static_cast<QSaveFile&>(*m_device).cancelWriting();
}
