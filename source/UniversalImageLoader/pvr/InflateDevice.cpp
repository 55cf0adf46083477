#include "InflateDevice.h"

#include <algorithm>

namespace {

constexpr int inputSize = 65536;
constexpr int gzipWindow = 16 + MAX_WBITS; ///< as zlib wants it: with its wrapper

} // namespace

InflateDevice::InflateDevice(QIODevice& source, Wrapper wrapper, qint64 limit)
    : m_source(source), m_isGzip(wrapper == Gzip), m_left(limit), m_input(new quint8[inputSize]) {
    if (inflateInit2(&m_stream, m_isGzip ? gzipWindow : MAX_WBITS) != Z_OK)
        m_state = Failed;
    open(ReadOnly | Unbuffered);
}

InflateDevice::~InflateDevice() { inflateEnd(&m_stream); }

bool InflateDevice::refill() {
    if (m_stream.avail_in > 0)
        return true;
    const qint64 count = m_source.read(reinterpret_cast<char*>(m_input.get()), inputSize);
    m_stream.next_in = m_input.get();
    m_stream.avail_in = static_cast<uInt>(std::max<qint64>(count, 0));
    return count > 0;
}

/// What follows a gzip stream is another one, or nothing that counts.
void InflateDevice::finishMember() {
    constexpr quint8 firstOfMember = 0x1F;
    if (m_isGzip && refill() && *m_stream.next_in == firstOfMember)
        inflateReset(&m_stream);
    else
        m_state = End;
}

void InflateDevice::inflateSome() {
    if (!refill()) {
        m_state = Failed;
        return;
    }
    const int result = ::inflate(&m_stream, Z_NO_FLUSH);
    if (result == Z_STREAM_END)
        finishMember();
    else if (result != Z_OK)
        m_state = Failed;
}

qint64 InflateDevice::readData(char* target, qint64 size) {
    // One byte more than the limit tells a stream that ends there from a longer one.
    const qint64 room = std::min(size, m_left + 1);
    m_stream.next_out = reinterpret_cast<Bytef*>(target);
    m_stream.avail_out = static_cast<uInt>(std::min<qint64>(room, 1 << 30));
    const uInt before = m_stream.avail_out;
    while (m_state == Running && m_stream.avail_out > 0)
        inflateSome();
    const qint64 count = before - m_stream.avail_out;
    m_left -= count;
    if (m_left < 0)
        m_state = Failed;
    return m_state == Failed && count == 0 ? -1 : count;
}
