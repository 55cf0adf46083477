#include "PngFilteredRows.h"

#include "Error.h"

#include <png.h>
#include <zlib.h>

#include <csetjmp>
#include <new>

namespace {

[[noreturn]] void fail() {
    throw Error(Error::TextureFile,
                QStringLiteral("[internal error] Inconsistent internal structures (incorrect libpng?)"));
}

std::vector<PngFilteredRows::Pass> passesOf(const PngPicture& picture) {
    if (picture.interlace == PNG_INTERLACE_NONE)
        return {{picture.rowBytes() + 1, picture.height}};
    std::vector<PngFilteredRows::Pass> passes;
    for (int pass = 0; pass < PNG_INTERLACE_ADAM7_PASSES; ++pass) {
        const std::size_t columns = PNG_PASS_COLS(picture.width, pass);
        const std::size_t rows = PNG_PASS_ROWS(picture.height, pass);
        if (columns > 0 && rows > 0)
            passes.push_back({(columns * picture.bitsPerPixel() + 7) / 8 + 1, rows});
    }
    return passes;
}

int libpngFilter(DeltaFilter filter) {
    constexpr int masks[] = {PNG_FILTER_NONE, PNG_FILTER_SUB,   PNG_FILTER_UP,
                             PNG_FILTER_AVG,  PNG_FILTER_PAETH, PNG_ALL_FILTERS};
    return masks[filter];
}

/// Lets libpng write the picture with its data stored instead of deflated. That is its filtered rows, without
/// a second implementation of how it chooses them.
class StoredFile {
public:
    explicit StoredFile(std::size_t dataSize) {
        m_png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, onError, onWarning);
        m_info = m_png ? png_create_info_struct(m_png) : nullptr;
        if (!m_info) {
            png_destroy_write_struct(&m_png, nullptr);
            throw std::bad_alloc();
        }
        m_file.reserve(static_cast<int>(std::min<std::size_t>(dataSize + dataSize / 256 + 1000, 1 << 30)));
        png_set_write_fn(m_png, &m_file, onWrite, nullptr);
    }
    ~StoredFile() { png_destroy_write_struct(&m_png, &m_info); }
    StoredFile(const StoredFile&) = delete;
    StoredFile& operator=(const StoredFile&) = delete;

    const QByteArray& write(const PngPicture& picture, DeltaFilter filter) {
        std::vector<png_bytep> rows(picture.height);
        for (std::size_t y = 0; y < rows.size(); ++y)
            rows[y] = const_cast<png_bytep>(picture.pixels.data() + y * picture.rowBytes());
        if (!write(picture, filter, rows.data()))
            fail();
        return m_file;
    }

private:
    // libpng may jump back into it, so that it has no local objects to destroy.
    bool write(const PngPicture& picture, DeltaFilter filter, png_bytepp rows) {
        if (setjmp(png_jmpbuf(m_png)))
            return false;
        png_set_IHDR(m_png, m_info, picture.width, picture.height, picture.bitDepth, picture.colorType,
                     picture.interlace, PNG_COMPRESSION_TYPE_BASE, PNG_FILTER_TYPE_BASE);
        if (picture.hasPalette())
            png_set_PLTE(m_png, m_info, reinterpret_cast<png_const_colorp>(picture.palette.data()),
                         static_cast<int>(picture.palette.size()));
        png_set_filter(m_png, PNG_FILTER_TYPE_BASE, libpngFilter(filter));
        png_set_compression_level(m_png, Z_NO_COMPRESSION);
        png_set_compression_buffer_size(m_png, 1 << 16);
        png_write_info(m_png, m_info);
        png_write_image(m_png, rows);
        png_write_end(m_png, nullptr);
        return true;
    }

    static void onWrite(png_structp png, png_bytep data, png_size_t size) {
        static_cast<QByteArray*>(png_get_io_ptr(png))
            ->append(reinterpret_cast<const char*>(data), static_cast<int>(size));
    }
    static void onError(png_structp png, png_const_charp) { png_longjmp(png, 1); }
    static void onWarning(png_structp, png_const_charp) {}

    QByteArray m_file;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
};

static_assert(sizeof(png_color) == 3);

/// Takes the rows out of the file again.
void inflateRows(const QByteArray& file, std::vector<std::uint8_t>& bytes) {
    z_stream stream = {};
    if (inflateInit(&stream) != Z_OK)
        throw std::bad_alloc();
    stream.next_out = bytes.data();
    std::size_t left = bytes.size();
    int status = Z_OK;
    for (const PngChunk& chunk : splitPng(file)) {
        if (chunk.type != "IDAT")
            continue;
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(chunk.data.data()));
        stream.avail_in = static_cast<uInt>(chunk.data.size());
        while (stream.avail_in > 0 && status == Z_OK) {
            const std::size_t room = std::min<std::size_t>(left, 1U << 30);
            stream.avail_out = static_cast<uInt>(room);
            status = inflate(&stream, Z_NO_FLUSH);
            left -= room - stream.avail_out;
        }
    }
    inflateEnd(&stream);
    if (status != Z_STREAM_END || left != 0)
        fail();
}

} // namespace

PngFilteredRows filterRows(const PngPicture& picture, DeltaFilter filter) {
    PngFilteredRows rows;
    rows.passes = passesOf(picture);
    std::size_t size = 0;
    for (const PngFilteredRows::Pass& pass : rows.passes)
        size += pass.rowBytes * pass.rows;
    StoredFile file(size);
    const QByteArray& stored = file.write(picture, filter);
    rows.bytes.resize(size);
    inflateRows(stored, rows.bytes);
    return rows;
}
