#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

/// PNG files taken apart and put together without the code under test: libpng and zlib alone.
namespace PngFile {

using Bytes = std::vector<std::uint8_t>;
using Chunk = std::pair<QByteArray, QByteArray>; ///< type and data

struct Header {
    std::uint32_t width;
    std::uint32_t height;
    int bitDepth;
    int colorType;
    int interlace;
};

/// One way to compress, with libpng's own numbers.
struct Trial {
    int filter; ///< 0 to 5, 5 is adaptive
    int strategy;
    int level;
    int memory;
};

/// A file of one IDAT chunk. `rows`: the pixels without filter bytes. `before` goes before IDAT.
QByteArray make(const Header& header, const Bytes& rows, const std::vector<Chunk>& before = {},
                const std::vector<Chunk>& after = {});

/// The chunks with IDAT joined; empty if a length or checksum is wrong.
std::vector<Chunk> chunks(const QByteArray& file);
int idatChunks(const QByteArray& file);
/// The chunk's data; null QByteArray if there is none.
QByteArray chunk(const QByteArray& file, const char* type);
Header header(const QByteArray& file);

/// Logging rules that are in force from the start of the tests: the optimiser's long tale is left out.
extern const QString quiet;

/// Every pixel as red, green, blue, alpha of 16 bits; empty if libpng can't read the file.
std::vector<std::uint16_t> pixels(const QByteArray& file);

/// What libpng's writer puts into IDAT for the picture of a file, written with those parameters. `windowBits`
/// 0 is libpng's own choice.
QByteArray written(const QByteArray& file, const Trial& trial, int windowBits = 0);

/// IDAT of the winner of the trials, made one after the other: a trial that is larger than the best is out,
/// an equal one wins over strategies 0 and 1. `maximum` is what the first may have. Null if none was small
/// enough.
QByteArray bestOf(const QByteArray& file, const std::vector<Trial>& trials, std::size_t maximum,
                  int windowBits = 0);

} // namespace PngFile
