#include "PngDeflate.h"

#include "Error.h"

#include <zlib.h>

#include <algorithm>
#include <new>

namespace {

/// Above that many bytes of rows libpng always takes the window that it was told.
constexpr std::size_t smallPicture = 16384;

/// A reader needs no room beside the data, so that the header may ask it for less than deflate had.
void shrinkDeclaredWindow(std::vector<std::uint8_t>& stream, std::size_t dataSize) {
    unsigned window = stream[0] >> 4; // half of it is 1 << (window + 7) bytes
    if (dataSize > smallPicture || dataSize > std::size_t{1} << (window + 7))
        return;
    while (window > 0 && dataSize <= std::size_t{1} << (window + 7))
        --window;
    const unsigned method = (stream[0] & 0x0FU) | window << 4;
    const unsigned flags = stream[1] & 0xE0U;
    stream[0] = static_cast<std::uint8_t>(method);
    stream[1] = static_cast<std::uint8_t>(flags + 31 - (method * 256 + flags) % 31);
}

class Deflater {
public:
    Deflater(const PngDeflateParameters& parameters, std::size_t dataSize,
             const std::atomic<std::size_t>& limit)
        : m_limit(limit) {
        const int windowBits = deflateWindowBits(dataSize, parameters.windowBits);
        const int status = deflateInit2(&m_stream, parameters.level, Z_DEFLATED, windowBits,
                                        parameters.memory, parameters.strategy);
        if (status == Z_MEM_ERROR)
            throw std::bad_alloc();
        if (status != Z_OK)
            fail();
    }
    ~Deflater() { deflateEnd(&m_stream); }
    Deflater(const Deflater&) = delete;
    Deflater& operator=(const Deflater&) = delete;

    /// False if the limit is passed.
    bool add(const std::uint8_t* data, std::size_t size, int flush) {
        m_stream.next_in = const_cast<Bytef*>(data);
        m_stream.avail_in = static_cast<uInt>(size);
        int status = Z_OK;
        do {
            makeRoom();
            const uInt room = m_stream.avail_out;
            status = deflate(&m_stream, flush);
            m_size += room - m_stream.avail_out;
            if (m_size > m_limit.load(std::memory_order_relaxed))
                return false;
        } while (status == Z_OK && (m_stream.avail_in > 0 || m_stream.avail_out == 0 || flush == Z_FINISH));
        if (flush == Z_FINISH ? status != Z_STREAM_END : status != Z_OK && status != Z_BUF_ERROR)
            fail();
        return true;
    }

    std::vector<std::uint8_t> take() {
        m_output.resize(m_size);
        return std::move(m_output);
    }

private:
    [[noreturn]] static void fail() {
        throw Error(Error::TextureFile, QStringLiteral("Inconsistent data in libpng"));
    }

    void makeRoom() {
        if (m_output.size() - m_size < 4096)
            m_output.resize(std::max<std::size_t>(2 * m_output.size(), 1 << 16));
        m_stream.next_out = m_output.data() + m_size;
        m_stream.avail_out = static_cast<uInt>(std::min<std::size_t>(m_output.size() - m_size, 1U << 30));
    }

    z_stream m_stream = {};
    const std::atomic<std::size_t>& m_limit;
    std::vector<std::uint8_t> m_output;
    std::size_t m_size = 0;
};

} // namespace

int deflateWindowBits(std::size_t dataSize, int windowBits) {
    // deflate needs 262 bytes beside the data; zlib takes 9 for 8.
    if (dataSize <= smallPicture)
        while (dataSize + 262 <= std::size_t{1} << (windowBits - 1))
            --windowBits;
    return std::max(windowBits, 9);
}

std::optional<std::vector<std::uint8_t>> deflateRows(const PngFilteredRows& rows,
                                                     const PngDeflateParameters& parameters,
                                                     const std::atomic<std::size_t>& limit) {
    Deflater deflater(parameters, rows.bytes.size(), limit);
    const std::uint8_t* row = rows.bytes.data();
    // Row by row, as libpng does: what deflate finds may depend on how it gets its data.
    for (const PngFilteredRows::Pass& pass : rows.passes)
        for (std::size_t y = 0; y < pass.rows; ++y, row += pass.rowBytes)
            if (!deflater.add(row, pass.rowBytes, Z_NO_FLUSH))
                return std::nullopt;
    if (!deflater.add(nullptr, 0, Z_FINISH))
        return std::nullopt;
    std::vector<std::uint8_t> stream = deflater.take();
    shrinkDeclaredWindow(stream, rows.bytes.size());
    return stream;
}
