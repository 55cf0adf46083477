#include "PngDecoder.h"

#include "Error.h"

#include <csetjmp>
#include <cstring>
#include <new>

PngDecoder::PngDecoder(const QByteArray& file, PngLog& log) : m_file(file), m_log(log) {
    m_png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, onError, onWarning);
    m_info = m_png ? png_create_info_struct(m_png) : nullptr;
    if (!m_info) {
        png_destroy_read_struct(&m_png, nullptr, nullptr);
        throw std::bad_alloc();
    }
    png_set_read_fn(m_png, this, onRead);
    // The chunks beside the pixels are read from the file itself.
    png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER, nullptr, -1);
}

PngDecoder::~PngDecoder() { png_destroy_read_struct(&m_png, &m_info, nullptr); }

PngPicture PngDecoder::decode() {
    if (!readHeader())
        throw Error(Error::TextureFile, m_error);
    PngPicture picture;
    picture.width = png_get_image_width(m_png, m_info);
    picture.height = png_get_image_height(m_png, m_info);
    picture.bitDepth = png_get_bit_depth(m_png, m_info);
    picture.colorType = png_get_color_type(m_png, m_info);
    picture.interlace = png_get_interlace_type(m_png, m_info);
    if (png_get_rowbytes(m_png, m_info) != picture.rowBytes())
        throw Error(Error::TextureFile, QStringLiteral("Inconsistent data in libpng"));
    picture.pixels.resize(picture.rowBytes() * picture.height);
    std::vector<png_bytep> rows(picture.height);
    for (std::size_t y = 0; y < rows.size(); ++y)
        rows[y] = picture.pixels.data() + y * picture.rowBytes();
    if (!readPixels(rows.data()))
        throw Error(Error::TextureFile, m_error);
    return picture;
}

bool PngDecoder::readHeader() {
    if (setjmp(png_jmpbuf(m_png)))
        return false;
    png_read_info(m_png, m_info);
    return true;
}

bool PngDecoder::readPixels(png_bytepp rows) {
    if (setjmp(png_jmpbuf(m_png)))
        return false;
    png_read_image(m_png, rows);
    png_read_end(m_png, nullptr);
    return true;
}

void PngDecoder::onRead(png_structp png, png_bytep data, png_size_t size) {
    auto* decoder = static_cast<PngDecoder*>(png_get_io_ptr(png));
    if (size > static_cast<png_size_t>(decoder->m_file.size() - decoder->m_position))
        png_error(png, "Can't read the input file or unexpected end of file");
    std::memcpy(data, decoder->m_file.constData() + decoder->m_position, size);
    decoder->m_position += static_cast<qint64>(size);
}

void PngDecoder::onError(png_structp png, png_const_charp text) {
    static_cast<PngDecoder*>(png_get_error_ptr(png))->m_error = QString::fromLatin1(text);
    png_longjmp(png, 1);
}

void PngDecoder::onWarning(png_structp png, png_const_charp text) {
    static_cast<PngDecoder*>(png_get_error_ptr(png))->m_log.print("Warning: %s\n", text);
}
