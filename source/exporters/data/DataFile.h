#pragma once

#include "OutputFile.h"

#include <QTextStream>

/// A data file in UTF-8, without a byte order mark, that appears under its name when it is complete. An
/// object that dies without commit() leaves what stood there before.
class DataFile {
public:
    /// Opens the file. `failure` is the sentence for the user of every fault, with %1 for the file's name.
    /// Throws Error (DataFile).
    DataFile(const QString& fileName, const QString& failure);

    /// For formats that are written line by line.
    QTextStream& text() { return m_text; }

    /// For formats with a writer of their own.
    QIODevice& device() { return m_file.device(); }

    /// Writes what is buffered, and throws Error (DataFile) if any of it couldn't be written, on a full disk
    /// for instance. For who has something to do between that and the file's appearance.
    void flush();

    /// Completes the file. Throws like flush().
    void commit();

    /// Throws the Error that a failed write gives.
    [[noreturn]] void fail() const;

private:
    QString m_fileName;
    QString m_failure;
    OutputFile m_file;
    QTextStream m_text;
};
