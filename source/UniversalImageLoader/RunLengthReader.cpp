#include "RunLengthReader.h"

#include <algorithm>
#include <cstring>

bool RunLengthReader::nextPacket() {
    while (m_left == 0) {
        const int code = m_stream.byte();
        if (code < 0)
            return false;
        const Packet packet = m_packetOf(code);
        m_left = packet.count;
        m_isRun = packet.isRun;
    }
    return !m_isRun || m_stream.read(m_unit, m_unitSize);
}

bool RunLengthReader::read(quint8* target, int units) {
    while (units > 0) {
        if (m_left == 0 && !nextPacket())
            return false;
        const int count = std::min(m_left, units);
        const int size = count * m_unitSize;
        if (m_isRun && m_unitSize == 1)
            std::memset(target, m_unit[0], static_cast<std::size_t>(size));
        else if (m_isRun)
            for (int i = 0; i < size; i += m_unitSize)
                std::memcpy(target + i, m_unit, static_cast<std::size_t>(m_unitSize));
        else if (!m_stream.read(target, size))
            return false;
        target += size;
        units -= count;
        m_left -= count;
    }
    return true;
}
