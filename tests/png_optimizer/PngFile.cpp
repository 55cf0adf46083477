#include "PngFile.h"

#include <QLoggingCategory>
#include <QtEndian>

#include <gtest/gtest.h>
#include <png.h>
#include <zlib.h>

#include <csetjmp>
#include <cstring>

namespace PngFile {

const QString quiet = QStringLiteral("default.debug=false");

namespace {

QByteArray number(std::uint32_t value) {
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray whole(const Chunk& chunk) {
    const QByteArray typed = chunk.first + chunk.second;
    const auto checksum =
        crc32(0, reinterpret_cast<const Bytef*>(typed.constData()), static_cast<uInt>(typed.size()));
    return number(static_cast<std::uint32_t>(chunk.second.size())) + typed +
           number(static_cast<std::uint32_t>(checksum));
}

std::vector<Chunk> separateChunks(const QByteArray& file) {
    std::vector<Chunk> found;
    for (int at = 8; at + 12 <= file.size();) {
        const auto length = static_cast<int>(qFromBigEndian<quint32>(file.constData() + at));
        if (length < 0 || length > file.size() - at - 12)
            return {};
        found.push_back({file.mid(at + 4, 4), file.mid(at + 8, length)});
        if (file.mid(at, length + 12) != whole(found.back()))
            return {};
        at += length + 12;
    }
    return found;
}

class Quiet : public testing::Environment {
    void SetUp() override { QLoggingCategory::setFilterRules(quiet); }
};

[[maybe_unused]] const auto* const environment = testing::AddGlobalTestEnvironment(new Quiet);

struct Reading {
    explicit Reading(const QByteArray& bytes) : file(bytes) {
        png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, onError, onWarning);
        info = png_create_info_struct(png);
        png_set_read_fn(png, this, onRead);
    }
    ~Reading() { png_destroy_read_struct(&png, &info, nullptr); }

    /// The rows as they are, or expanded to 16 bits a sample and four samples.
    bool read(bool expanded) {
        if (setjmp(png_jmpbuf(png)))
            return false;
        png_read_info(png, info);
        if (expanded) {
            png_set_expand_16(png);
            png_set_gray_to_rgb(png);
            png_set_add_alpha(png, 0xFFFF, PNG_FILLER_AFTER);
        }
        png_set_interlace_handling(png);
        png_read_update_info(png, info);
        rowBytes = png_get_rowbytes(png, info);
        pixels.resize(rowBytes * png_get_image_height(png, info));
        for (std::size_t first = 0; first < pixels.size(); first += rowBytes)
            rows.push_back(pixels.data() + first);
        png_read_image(png, rows.data());
        png_read_end(png, nullptr);
        return true;
    }

    static void onRead(png_structp reader, png_bytep data, png_size_t size) {
        auto* reading = static_cast<Reading*>(png_get_io_ptr(reader));
        if (reading->at + size > static_cast<std::size_t>(reading->file.size()))
            png_error(reader, "short");
        std::memcpy(data, reading->file.constData() + reading->at, size);
        reading->at += size;
    }
    static void onError(png_structp reader, png_const_charp) { png_longjmp(reader, 1); }
    static void onWarning(png_structp, png_const_charp) {}

    const QByteArray& file;
    std::size_t at = 0;
    png_structp png = nullptr;
    png_infop info = nullptr;
    std::size_t rowBytes = 0;
    Bytes pixels;
    std::vector<png_bytep> rows;
};

void onWrite(png_structp png, png_bytep data, png_size_t size) {
    static_cast<QByteArray*>(png_get_io_ptr(png))
        ->append(reinterpret_cast<const char*>(data), static_cast<int>(size));
}

} // namespace

QByteArray make(const Header& header, const Bytes& rows, const std::vector<Chunk>& before,
                const std::vector<Chunk>& after) {
    QByteArray data = number(header.width) + number(header.height);
    for (const int field : {header.bitDepth, header.colorType, 0, 0, 0})
        data += static_cast<char>(field);
    const std::size_t rowBytes = rows.size() / header.height;
    Bytes filtered;
    for (std::size_t y = 0; y < header.height; ++y) {
        filtered.push_back(0);
        filtered.insert(filtered.end(), rows.begin() + static_cast<std::ptrdiff_t>(y * rowBytes),
                        rows.begin() + static_cast<std::ptrdiff_t>((y + 1) * rowBytes));
    }
    QByteArray idat(static_cast<int>(compressBound(filtered.size())), '\0');
    uLongf size = static_cast<uLongf>(idat.size());
    EXPECT_EQ(compress2(reinterpret_cast<Bytef*>(idat.data()), &size, filtered.data(), filtered.size(), 1),
              Z_OK);
    idat.resize(static_cast<int>(size));
    QByteArray file = QByteArrayLiteral("\x89PNG\r\n\x1a\n") + whole({"IHDR", data});
    for (const Chunk& chunk : before)
        file += whole(chunk);
    file += whole({"IDAT", idat});
    for (const Chunk& chunk : after)
        file += whole(chunk);
    return file + whole({"IEND", {}});
}

std::vector<Chunk> chunks(const QByteArray& file) {
    std::vector<Chunk> joined;
    for (const Chunk& chunk : separateChunks(file))
        if (!joined.empty() && chunk.first == "IDAT" && joined.back().first == "IDAT")
            joined.back().second += chunk.second;
        else
            joined.push_back(chunk);
    return joined;
}

int idatChunks(const QByteArray& file) {
    int count = 0;
    for (const Chunk& chunk : separateChunks(file))
        count += chunk.first == "IDAT";
    return count;
}

QByteArray chunk(const QByteArray& file, const char* type) {
    for (const Chunk& chunk : chunks(file))
        if (chunk.first == type)
            return chunk.second.isNull() ? QByteArray("") : chunk.second;
    return {};
}

Header header(const QByteArray& file) {
    const QByteArray data = chunk(file, "IHDR");
    EXPECT_EQ(data.size(), 13);
    if (data.size() != 13)
        return {};
    return {qFromBigEndian<quint32>(data.constData()), qFromBigEndian<quint32>(data.constData() + 4), data[8],
            data[9], data[12]};
}

std::vector<std::uint16_t> pixels(const QByteArray& file) {
    Reading reading(file);
    if (!reading.read(true))
        return {};
    std::vector<std::uint16_t> samples(reading.pixels.size() / 2);
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = qFromBigEndian<quint16>(reading.pixels.data() + 2 * i);
    return samples;
}

QByteArray written(const QByteArray& file, const Trial& trial, int windowBits) {
    Reading reading(file);
    EXPECT_TRUE(reading.read(false));
    QByteArray result;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(png, &result, onWrite, nullptr);
    const Header fields = header(file);
    png_set_IHDR(png, info, fields.width, fields.height, fields.bitDepth, fields.colorType, fields.interlace,
                 0, 0);
    png_colorp palette = nullptr;
    int colors = 0;
    if (png_get_PLTE(reading.png, reading.info, &palette, &colors))
        png_set_PLTE(png, info, palette, colors);
    constexpr int filters[] = {PNG_FILTER_NONE, PNG_FILTER_SUB,   PNG_FILTER_UP,
                               PNG_FILTER_AVG,  PNG_FILTER_PAETH, PNG_ALL_FILTERS};
    png_set_filter(png, 0, filters[trial.filter]);
    png_set_compression_level(png, trial.level);
    png_set_compression_mem_level(png, trial.memory);
    png_set_compression_strategy(png, trial.strategy);
    if (trial.strategy >= 2)
        png_set_compression_window_bits(png, 9);
    else if (windowBits > 0)
        png_set_compression_window_bits(png, windowBits);
    png_write_info(png, info);
    png_write_image(png, reading.rows.data());
    png_write_end(png, nullptr);
    png_destroy_write_struct(&png, &info);
    return chunk(result, "IDAT");
}

QByteArray bestOf(const QByteArray& file, const std::vector<Trial>& trials, std::size_t maximum,
                  int windowBits) {
    QByteArray best;
    int bestStrategy = 0;
    for (const Trial& trial : trials) {
        const QByteArray idat = written(file, trial, windowBits);
        const auto size = static_cast<std::size_t>(idat.size());
        if (size > maximum || (!best.isNull() && size == maximum && bestStrategy >= 2))
            continue;
        best = idat;
        bestStrategy = trial.strategy;
        maximum = size;
    }
    return best;
}

} // namespace PngFile
