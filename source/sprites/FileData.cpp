#include "FileData.h"

#include "FileState.h"

struct FileData::Record {
    QString path;
    FileState state;
};

FileData::FileData() : FileData(QString()) {}

FileData::FileData(const QString& path) : m_record(std::make_shared<Record>(Record{path, {}})) {}

const QString& FileData::path() const { return m_record->path; }

qint64 FileData::size() const { return m_record->state.size; }

bool FileData::checkChanged() {
    const FileState found = fileState(m_record->path);
    FileState& stored = m_record->state;
    const bool changed = found.lastModified != stored.lastModified || found.size != stored.size;
    stored = found;
    return changed;
}

QByteArray FileData::hashText() const {
    QByteArray text;
    appendFileState(text, m_record->path, m_record->state);
    return text;
}
