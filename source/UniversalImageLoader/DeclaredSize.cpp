#include "DeclaredSize.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <limits>

namespace {

int limited(qint64 side) { return int(std::min<qint64>(side, std::numeric_limits<int>::max())); }

// PNG and MNG alike: eight bytes of signature, then the first chunk's length, name, width and height.
QSize firstChunkSize(const QByteArray& head) {
    return QSize(limited(qFromBigEndian<quint32>(head.constData() + 16)),
                 limited(qFromBigEndian<quint32>(head.constData() + 20)));
}

QSize mngSize(QFile& file) {
    const QByteArray head = file.read(24);
    return head.size() == 24 ? firstChunkSize(head) : QSize();
}

// The toolkit shows the first picture of the directory.
QSize iconSize(QFile& file) {
    const QByteArray directory = file.read(22);
    if (directory.size() < 22 || !file.seek(qFromLittleEndian<quint32>(directory.constData() + 18)))
        return QSize();
    const QByteArray head = file.read(24);
    if (head.size() < 24)
        return QSize();
    if (head.startsWith("\x89PNG"))
        return firstChunkSize(head);
    const qint64 width = qFromLittleEndian<qint32>(head.constData() + 4);
    const qint64 height = qFromLittleEndian<qint32>(head.constData() + 8); // of colours and mask together
    return QSize(limited(std::abs(width)), limited(std::abs(height) / 2));
}

} // namespace

QSize declaredSize(const QString& path, const QByteArray& format) {
    const bool icon = format == "ico" || format == "cur";
    if (!icon && format != "mng")
        return QSize();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QSize();
    return icon ? iconSize(file) : mngSize(file);
}
