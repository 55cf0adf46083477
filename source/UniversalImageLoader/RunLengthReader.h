#pragma once

#include "ByteStream.h"

/// Unpacks run-length encoded units of one to four bytes. A packet begins with a code byte; then follow its
/// units, or one unit that stands for all of them.
class RunLengthReader {
public:
    struct Packet {
        int count; ///< units; a packet of none is passed over
        bool isRun;
    };

    /// Targa: one to 128 units.
    static Packet targaPacket(int code) { return {(code & 0x7F) + 1, (code & 0x80) != 0}; }
    /// PackBits (Apple, TIFF 6.0 section 9): one to 128 units; code 128 does nothing.
    static Packet packBitsPacket(int code) {
        return code < 128 ? Packet{code + 1, false} : Packet{code == 128 ? 0 : 257 - code, true};
    }

    RunLengthReader(ByteStream& stream, int unitSize, Packet (*packetOf)(int code))
        : m_stream(stream), m_unitSize(unitSize), m_packetOf(packetOf) {}

    /// The next `units`; packets may reach beyond them. False at the end of the stream.
    bool read(quint8* target, int units);

    /// Whether what was read ended with a packet.
    bool atPacketEnd() const { return m_left == 0; }

private:
    bool nextPacket();

    ByteStream& m_stream;
    const int m_unitSize;
    Packet (*const m_packetOf)(int);
    int m_left = 0; ///< units of the packet
    bool m_isRun = false;
    quint8 m_unit[4] = {}; ///< of a run
};
