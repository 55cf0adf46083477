#include "DataFile.h"

#include "Error.h"

DataFile::DataFile(const QString& fileName, const QString& failure)
    : m_fileName(fileName), m_failure(failure), m_file(fileName) {
    if (!m_file.open())
        fail();
    m_text.setDevice(&m_file.device());
    m_text.setCodec("UTF-8");
}

void DataFile::commit() {
    m_text.flush();
    if (m_text.status() != QTextStream::Ok || !m_file.commit())
        fail();
}

void DataFile::fail() const { throw Error(Error::DataFile, m_failure.arg(m_fileName)); }
