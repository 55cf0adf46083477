#include "LegacyStream.h"

#include "Error.h"

#include <QSize>
#include <QStringList>
#include <QtEndian>

#include <bit>

namespace {

// A short text becomes an object, a path even a long one: a list's memory is bounded by its own measure.
constexpr quint32 longestList = 131072;
constexpr quint32 nullString = 0xffffffff;

/// Type numbers as streams of that version store them.
enum StoredType : quint32 {
    Invalid = 0,
    Bool = 1,
    Int = 2,
    UInt = 3,
    Double = 6,
    String = 10,
    StringList = 11,
    Size = 21,
    RenumberedFloat = 38, ///< what later toolkits call it; theirs take it in old streams, too
    Float = 135,
};

} // namespace

/// The next bytes, null if there are fewer.
const uchar* LegacyStream::take(quint32 count) {
    if (count > bytesLeft()) {
        fail();
        return nullptr;
    }
    const auto* bytes = reinterpret_cast<const uchar*>(m_bytes.constData()) + m_position;
    m_position += int(count);
    return bytes;
}

void LegacyStream::fail() {
    m_failed = true;
    m_position = m_bytes.size();
}

qint32 LegacyStream::readInt() { return qint32(readUInt()); }

quint32 LegacyStream::readUInt() {
    const uchar* bytes = take(sizeof(quint32));
    return bytes ? qFromBigEndian<quint32>(bytes) : 0;
}

bool LegacyStream::readBool() {
    const uchar* byte = take(1);
    return byte && *byte;
}

double LegacyStream::readDouble() {
    const uchar* bytes = take(sizeof(quint64));
    return bytes ? std::bit_cast<double>(qFromBigEndian<quint64>(bytes)) : 0.0;
}

QString LegacyStream::readString() {
    const quint32 length = readUInt();
    if (m_failed || length == nullString)
        return QString();
    if (length % 2 != 0) {
        fail();
        return QString();
    }
    const uchar* units = take(length);
    if (!units)
        return QString();
    QString text(int(length / 2), Qt::Uninitialized);
    qFromBigEndian<quint16>(units, qsizetype(length / 2), text.data());
    return text;
}

QStringList LegacyStream::readStringList() {
    const quint32 count = readUInt();
    if (count > bytesLeft() / sizeof(quint32)) {
        fail();
        return QStringList();
    }
    if (count > longestList)
        throw Error(Error::Open, QStringLiteral("File format error"));
    QStringList list;
    for (quint32 i = 0; i < count && !m_failed; ++i)
        list.append(readString());
    return list;
}

QSize LegacyStream::readSize() {
    const int width = readInt();
    const int height = readInt();
    return QSize(width, height);
}

QVariant LegacyStream::readPayload(quint32 type) {
    switch (type) {
    case Invalid:
        readString(); // every value has something behind its type, and a value of no type has a text
        return QVariant();
    case Bool:
        return readBool();
    case Int:
        return readInt();
    case UInt:
        return readUInt();
    case Double:
        return readDouble();
    case Float:
    case RenumberedFloat:
        return float(readDouble()); // streams of that version hold a float in double precision
    case String:
        return readString();
    case StringList:
        return readStringList();
    case Size:
        return readSize();
    default:
        fail(); // its length is unknown, so that nothing behind it can be found
        return QVariant();
    }
}

QVariant LegacyStream::readVariant() {
    const quint32 type = readUInt();
    const bool null = readBool();
    const QVariant value = readPayload(type);
    return null || m_failed ? QVariant() : value;
}
