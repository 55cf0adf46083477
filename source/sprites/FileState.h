#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// What tells that a file has changed. Times in milliseconds since 1970 in UTC.
struct FileState {
    qint64 size = -1; ///< bytes; -1 before the first look, 0 if there is no such file
    std::optional<qint64> lastModified;
    std::optional<qint64> created; ///< not every file system knows it
};

/// Appends "path|size|last modified|created" in UTF-8, size in bytes, times in the form of textDate().
void appendFileState(QByteArray& text, const QString& path, const FileState& state);

/// Looks at a file, links followed. From any thread.
FileState fileState(const QString& path);
