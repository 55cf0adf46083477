#include "FileData.h"

#include "TextDate.h"

#include <QFileInfo>

namespace {

struct State {
    qint64 size = -1; ///< bytes; -1 before the first look
    QDateTime lastModified;
    QDateTime created;
};

// A fresh QFileInfo asks the file system once and answers the rest from what it got; times first, since to be
// there is among what they tell.
State stateOnDisk(const QString& path) {
    const QFileInfo info(path);
    const QDateTime lastModified = info.lastModified();
    if (!info.exists())
        return {0, QDateTime(), QDateTime()};
    return {info.size(), lastModified, info.birthTime()};
}

QString lineText(const QString& path, const State& state) {
    return QStringLiteral("%1|%2|%3|%4")
        .arg(path, QString::number(state.size), textDate(state.lastModified), textDate(state.created));
}

} // namespace

struct FileData::Record {
    QString path;
    State state;
};

FileData::FileData() : FileData(QString()) {}

FileData::FileData(const QString& path) : m_record(std::make_shared<Record>(Record{path, {}})) {}

const QString& FileData::path() const { return m_record->path; }

bool FileData::checkChanged() {
    const State found = stateOnDisk(m_record->path);
    State& stored = m_record->state;
    const bool changed = found.lastModified != stored.lastModified || found.size != stored.size;
    stored = found;
    return changed;
}

QString FileData::hashText() const { return lineText(m_record->path, m_record->state); }

QString FileData::currentHashText() const { return lineText(m_record->path, stateOnDisk(m_record->path)); }
