#include "InPlaceFile.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>

namespace {

/// Makes room for `size` bytes without changing what stands in the file's first `oldSize` bytes.
bool reserve(QFile& file, qint64 oldSize, qint64 size) {
    if (size <= oldSize)
        return true;
    const int result = posix_fallocate(file.handle(), oldSize, size - oldSize);
    // A file system without reservation, or a device: writing itself has to tell.
    if (result == 0 || result == EOPNOTSUPP || result == EINVAL || result == ENODEV || result == ESPIPE)
        return true;
    file.resize(oldSize);
    return false;
}

} // namespace

bool writeInPlace(const QString& fileName, const QByteArray& bytes) {
    QFile file(fileName);
    const bool isNew = !file.exists();
    // Not truncated: the old content stays until the new one has its space.
    if (!file.open(QIODevice::ReadWrite))
        return false;
    if (!reserve(file, file.size(), bytes.size())) {
        if (isNew)
            file.remove();
        return false;
    }
    const bool written = file.write(bytes) == bytes.size() && file.flush();
    return written && (file.isSequential() || file.resize(bytes.size()));
}
