#pragma once

#include <QByteArray>
#include <QVariant>

/// Reader of the binary form that the program's first generation stored projects in: the toolkit's
/// QDataStream format (published as "Serializing Qt Data Types"), version Qt_4_8, big endian.
///
/// It stands in for QDataStream, whose readers trust the stream: they take memory by claimed lengths, and a
/// QVariant of any type that happens to be registered is made on the stream's word, with all the readers
/// behind it. Here only the plain values that a project holds are read, none of which nests, and a length is
/// compared with the bytes left before anything is taken.
///
/// A fault makes the stream fail for good, as the end of the bytes does: what is read from then on is empty.
/// One thread at a time.
class LegacyStream {
public:
    explicit LegacyStream(const QByteArray& bytes) : m_bytes(bytes) {}

    /// Something was read that wasn't there, or that is not of this format.
    bool failed() const { return m_failed; }

    /// 0 when failed.
    qint32 readInt();
    quint32 readUInt();

    /// Null for a stored null string and when failed.
    QString readString();

    /// A bool, int, uint, double, float, QString, QStringList or QSize; invalid for a stored null and when
    /// failed. Throws Error 22 for a list of more than 131,072 texts.
    QVariant readVariant();

private:
    const uchar* take(quint32 count);
    void fail();
    quint32 bytesLeft() const { return quint32(m_bytes.size() - m_position); }
    bool readBool();
    double readDouble();
    QStringList readStringList();
    QSize readSize();
    QVariant readPayload(quint32 type);

    QByteArray m_bytes;
    int m_position = 0;
    bool m_failed = false;
};
