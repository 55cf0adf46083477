#pragma once

#include <QIODevice>

#include <memory>

/// Reads a device forwards through a buffer of its own; the device should be open without one (Unbuffered).
/// From then on the device's own position means nothing to others.
class ByteStream {
public:
    explicit ByteStream(QIODevice& device);

    /// 0 to 255, or -1 at the end.
    int byte() { return m_next < m_end || refill() ? m_buffer[m_next++] : -1; }

    /// Reads `size` bytes, or fewer at the end, and tells how many.
    qint64 readSome(void* target, qint64 size);

    /// False if fewer than `size` bytes are left.
    bool read(void* target, qint64 size) { return readSome(target, size) == size; }

    /// Goes on by `size` bytes. False if fewer are left.
    bool skip(qint64 size);

    /// False if fewer than `size` bytes are left, as far as the device knows its size. Asked before memory is
    /// taken for what a header promises.
    bool mayHold(qint64 size) const;

private:
    bool refill();

    static constexpr qint64 capacity = 65536;

    QIODevice& m_device;
    const std::unique_ptr<quint8[]> m_buffer;
    qint64 m_next = 0;
    qint64 m_end = 0;
};
