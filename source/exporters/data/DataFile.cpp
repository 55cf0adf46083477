#include "DataFile.h"

#include "Error.h"

DataFile::DataFile(const QString& fileName, const QString& failure)
    : m_fileName(fileName), m_failure(failure), m_file(fileName) {
    if (!m_file.open())
        fail();
    m_text.setDevice(&m_file.device());
    m_text.setCodec("UTF-8");
}

void DataFile::flush() {
    m_text.flush();
    QFileDevice& device = m_file.device();
    if (m_text.status() != QTextStream::Ok || !device.flush() || device.error() != QFileDevice::NoError)
        fail();
}

void DataFile::commit() {
    flush();
    if (!m_file.commit())
        fail();
}

void DataFile::fail() const { throw Error(Error::DataFile, m_failure.arg(m_fileName)); }
