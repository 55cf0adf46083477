#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

/// Shared record of a source file with change detection. Copies share the record, so that the tree, a sprite
/// and a packed sprite see the same state. Not locked: the worker thread writes it, others read it between
/// jobs.
class FileData {
public:
    /// A record without a path.
    FileData();

    /// A record of the file that hasn't been looked at: size -1, no times.
    explicit FileData(const QString& path);

    const QString& path() const;

    /// Looks at the file. True if its size or its time of last change differs from what is stored, and so at
    /// the first call; the new state is stored. A file that isn't there has size 0 and no time.
    bool checkChanged();

    /// Bytes of the file in the stored state.
    qint64 size() const;

    /// "path|size|last modified|created" of the stored state in UTF-8, see appendFileState().
    QByteArray hashText() const;

private:
    struct Record;
    std::shared_ptr<Record> m_record;
};
