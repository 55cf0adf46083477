#pragma once

#include <QFileDevice>
#include <QString>

#include <memory>

/// A file that appears under its name only when it is complete: it is written beside the target under a
/// temporary name and renamed by commit(). An object that dies without commit() leaves what stood there
/// before. A target that exists and is no plain file (a device, a pipe) is written to directly, as there is
/// nothing to rename; a folder can't be opened.
class OutputFile {
public:
    explicit OutputFile(const QString& fileName);
    ~OutputFile();

    /// Opens for writing, binary. False on failure, see errorString().
    bool open();

    /// The open device. What it can't write it reports at commit() at the latest.
    QFileDevice& device() { return *m_device; }

    /// Writes what is buffered and gives the file its name. False if any write since open() failed; nothing
    /// stays then.
    bool commit();

    /// Gives up what was written.
    void cancel();

    /// Removes an output file. What is no plain file (a device, a folder) stays, whatever the user's rights.
    static void remove(const QString& fileName);

    QString errorString() const { return m_device->errorString(); }

private:
    std::unique_ptr<QFileDevice> m_device;
    bool m_direct = false;
};
