#pragma once

#include <QIODevice>

#include <zlib.h>

#include <memory>

/// Reads what a zlib or gzip stream (RFC 1950, 1952) in another device holds. Gzip members may follow each
/// other. It is open from the start, without a buffer.
class InflateDevice : public QIODevice {
public:
    enum Wrapper { Zlib, Gzip };

    /// Reads `source` from where it stands. Beyond `limit` bytes reading fails, as at damage.
    InflateDevice(QIODevice& source, Wrapper wrapper, qint64 limit);
    ~InflateDevice() override;

    bool isSequential() const override { return true; }

    /// Whether all was read, and the stream came to its proper end.
    bool reachedEnd() const { return m_state == End; }

protected:
    qint64 readData(char* target, qint64 size) override;
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    enum State { Running, End, Failed };

    bool refill();
    void inflateSome();
    void finishMember();

    QIODevice& m_source;
    const bool m_isGzip;
    qint64 m_left; ///< to the limit
    State m_state = Running;
    z_stream m_stream = {};
    const std::unique_ptr<quint8[]> m_input;
};
