#pragma once

#include "PngLog.h"
#include "PngPicture.h"

#include <QByteArray>
#include <QString>

#include <png.h>

/// Reads the pixels of a PNG file in memory with libpng, untransformed. For one file, on one thread.
class PngDecoder {
public:
    /// Both arguments have to outlive the decoder.
    PngDecoder(const QByteArray& file, PngLog& log);
    ~PngDecoder();
    PngDecoder(const PngDecoder&) = delete;
    PngDecoder& operator=(const PngDecoder&) = delete;

    /// Header fields and pixels. Throws Error with libpng's text.
    PngPicture decode();

private:
    // Between these two libpng may jump back to its caller, so that they have no local objects to destroy.
    bool readHeader();
    bool readPixels(png_bytepp rows);

    static void onRead(png_structp png, png_bytep data, png_size_t size);
    static void onError(png_structp png, png_const_charp text);
    static void onWarning(png_structp png, png_const_charp text);

    const QByteArray& m_file;
    PngLog& m_log;
    qint64 m_position = 0;
    QString m_error;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
};
