#include "ByteStream.h"

#include <algorithm>
#include <cstring>

ByteStream::ByteStream(QIODevice& device) : m_device(device), m_buffer(new quint8[capacity]) {}

bool ByteStream::refill() {
    m_next = 0;
    m_end = std::max<qint64>(m_device.read(reinterpret_cast<char*>(m_buffer.get()), capacity), 0);
    return m_end > 0;
}

qint64 ByteStream::readSome(void* target, qint64 size) {
    if (size == 0) // there may be no target
        return 0;
    auto* to = static_cast<char*>(target);
    qint64 done = std::min(size, m_end - m_next);
    std::memcpy(to, m_buffer.get() + m_next, static_cast<std::size_t>(done));
    m_next += done;
    while (size - done >= capacity) {
        const qint64 count = m_device.read(to + done, size - done);
        if (count <= 0)
            return done;
        done += count;
    }
    while (done < size && refill()) {
        m_next = std::min(size - done, m_end);
        std::memcpy(to + done, m_buffer.get(), static_cast<std::size_t>(m_next));
        done += m_next;
    }
    return done;
}

bool ByteStream::skip(qint64 size) {
    while (size > m_end - m_next) {
        size -= m_end - m_next;
        m_next = m_end;
        if (!m_device.isSequential())
            return size <= m_device.size() - m_device.pos() && m_device.seek(m_device.pos() + size);
        if (!refill())
            return false;
    }
    m_next += size;
    return true;
}

bool ByteStream::mayHold(qint64 size) const {
    return m_device.isSequential() || size <= m_end - m_next + m_device.size() - m_device.pos();
}
