#include "SheetPng.h"

#include "DeflateParser.h"
#include "DeflateWriter.h"
#include "PngChunks.h"
#include "RowFilter.h"
#include "SideBySide.h"

#include <QBuffer>
#include <QImageWriter>
#include <QtEndian>

#include <png.h>
#include <zlib.h>

#include <algorithm>

namespace {

constexpr DeflateEffort guessEffort{4, 16};
constexpr DeflateEffort quickEffort{18, 64};
/// For what takes little time in any case.
constexpr DeflateEffort thoroughEffort{256, 1024};

/// Pictures of so many bytes are small.
constexpr std::size_t smallBytes = std::size_t{1} << 20;

/// The file is made in bands of rows of about so many bytes, which don't depend on the number of cores.
constexpr std::size_t bandBytes = std::size_t{1} << 20;

struct Band {
    std::size_t firstRow;
    std::size_t rows;
    bool isFiltered = false;
    std::vector<std::uint8_t> deflated = {};
    uLong checksum = 0; ///< Adler-32 of the band's filtered rows
};

/// Filtered rows of a band, behind those before it that matches may reach back to.
struct FilteredBand {
    std::vector<std::uint8_t> bytes; ///< with DeflateParser::readable more at the end
    std::size_t begin;
    std::size_t end;
};

/// A picture's rows on their way into a zlib stream.
class SheetStream {
public:
    SheetStream(const QImage& image, std::size_t bytesPerPixel);

    std::vector<Band>& deflate();

private:
    std::size_t filteredBytes(std::size_t rows) const { return rows * (m_rowBytes + 1); }
    void readRow(std::size_t y, std::uint8_t* target) const;
    void filterRows(std::size_t first, std::size_t count, bool adaptive, std::uint8_t* target) const;
    bool isSmallerUnfiltered(const Band& band) const;
    FilteredBand filtered(std::size_t number) const;
    std::vector<std::uint8_t> deflated(const FilteredBand& band, const DeflateEffort& effort,
                                       bool isLast) const;
    void deflateBand(std::size_t number);

    const QImage m_image;
    const std::size_t m_bytesPerPixel;
    const std::size_t m_rowBytes;
    std::vector<Band> m_bands;
};

SheetStream::SheetStream(const QImage& image, std::size_t bytesPerPixel)
    : m_image(image.convertToFormat(bytesPerPixel == 4 ? QImage::Format_ARGB32 : QImage::Format_RGB32)),
      m_bytesPerPixel(bytesPerPixel), m_rowBytes(static_cast<std::size_t>(image.width()) * bytesPerPixel) {
    const auto height = static_cast<std::size_t>(image.height());
    const std::size_t rows = std::max<std::size_t>(bandBytes / filteredBytes(1), 1);
    for (std::size_t first = 0; first < height; first += rows)
        m_bands.push_back({first, std::min(rows, height - first)});
}

void SheetStream::readRow(std::size_t y, std::uint8_t* target) const {
    const auto* pixel = reinterpret_cast<const QRgb*>(m_image.constScanLine(static_cast<int>(y)));
    for (const QRgb* const end = pixel + m_image.width(); pixel != end; ++pixel) {
        *target++ = static_cast<std::uint8_t>(qRed(*pixel));
        *target++ = static_cast<std::uint8_t>(qGreen(*pixel));
        *target++ = static_cast<std::uint8_t>(qBlue(*pixel));
        if (m_bytesPerPixel == 4)
            *target++ = static_cast<std::uint8_t>(qAlpha(*pixel));
    }
}

void SheetStream::filterRows(std::size_t first, std::size_t count, bool adaptive,
                             std::uint8_t* target) const {
    RowFilter filter(m_bytesPerPixel, m_rowBytes);
    std::vector<std::uint8_t> row(m_rowBytes);
    std::vector<std::uint8_t> above(m_rowBytes);
    if (first > 0)
        readRow(first - 1, above.data());
    for (std::size_t y = first; y < first + count; ++y, target += filteredBytes(1)) {
        readRow(y, row.data());
        if (adaptive)
            filter.adaptive(row.data(), above.data(), target);
        else
            filter.none(row.data(), target);
        row.swap(above);
    }
}

/// `bytes` for themselves, with DeflateParser::readable more behind them.
std::uint64_t deflatedBits(const std::uint8_t* bytes, std::size_t size) {
    DeflateParser parser(bytes, 0, size, guessEffort);
    DeflateWriter writer(bytes);
    for (DeflateSymbols block; parser.nextBlock(block);)
        writer.write(block, false);
    return writer.size();
}

/// Drawn pixels want no filter, painted ones do: two samples of the band tell what it has.
bool SheetStream::isSmallerUnfiltered(const Band& band) const {
    constexpr std::size_t samples = 2;
    constexpr std::size_t sampleBytes = std::size_t{1} << 15;
    const std::size_t rows = std::clamp<std::size_t>(sampleBytes / filteredBytes(1), 1, band.rows);
    // Of their own: the parser reads bytes behind the sample, which in the picture may be another core's.
    std::vector<std::uint8_t> sample(filteredBytes(rows) + DeflateParser::readable);
    std::uint64_t adaptive = 0;
    std::uint64_t unfiltered = 0;
    for (std::size_t i = 0; i < samples; ++i) {
        const std::size_t first = band.firstRow + (band.rows - rows) * (2 * i + 1) / (2 * samples);
        const auto bits = [&](bool isAdaptive) {
            filterRows(first, rows, isAdaptive, sample.data());
            return deflatedBits(sample.data(), filteredBytes(rows));
        };
        adaptive += bits(true);
        unfiltered += bits(false);
    }
    return unfiltered < adaptive;
}

FilteredBand SheetStream::filtered(std::size_t number) const {
    const Band& band = m_bands[number];
    // A band has more bytes than a window, but for the last one.
    const std::size_t rowsBefore =
        std::min((deflateFormat::window + m_rowBytes) / filteredBytes(1), band.firstRow);
    FilteredBand rows{{}, filteredBytes(rowsBefore), filteredBytes(rowsBefore + band.rows)};
    rows.bytes.resize(rows.end + DeflateParser::readable);
    if (rowsBefore > 0)
        filterRows(band.firstRow - rowsBefore, rowsBefore, m_bands[number - 1].isFiltered, rows.bytes.data());
    filterRows(band.firstRow, band.rows, band.isFiltered, rows.bytes.data() + rows.begin);
    return rows;
}

std::vector<std::uint8_t> SheetStream::deflated(const FilteredBand& band, const DeflateEffort& effort,
                                                bool isLast) const {
    DeflateParser parser(band.bytes.data(), band.begin, band.end, effort);
    DeflateWriter writer(band.bytes.data());
    for (DeflateSymbols block; parser.nextBlock(block);)
        writer.write(block, isLast && block.end == band.end);
    if (!isLast)
        writer.align();
    return writer.take();
}

void SheetStream::deflateBand(std::size_t number) {
    Band& band = m_bands[number];
    const FilteredBand rows = filtered(number);
    const bool isLast = number + 1 == m_bands.size();
    const std::size_t size = rows.end - rows.begin;
    const bool isSmall = m_bands.size() == 1 && size <= smallBytes;
    band.deflated = deflated(rows, isSmall ? thoroughEffort : quickEffort, isLast);
    // Long matches are what makes it so short, and are quickly passed.
    constexpr std::size_t simple = 64;
    if (!isSmall && band.deflated.size() < size / simple) {
        std::vector<std::uint8_t> shorter = deflated(rows, thoroughEffort, isLast);
        if (shorter.size() < band.deflated.size())
            band.deflated = std::move(shorter);
    }
    band.checksum = adler32(1, rows.bytes.data() + rows.begin, static_cast<uInt>(size));
}

std::vector<Band>& SheetStream::deflate() {
    sideBySide(m_bands.size(), [this](std::size_t number) {
        m_bands[number].isFiltered = !isSmallerUnfiltered(m_bands[number]);
    });
    sideBySide(m_bands.size(), [this](std::size_t number) { deflateBand(number); });
    return m_bands;
}

void appendNumber(QByteArray& bytes, quint32 number) {
    const quint32 bigEndian = qToBigEndian(number);
    bytes.append(reinterpret_cast<const char*>(&bigEndian), sizeof bigEndian);
}

void appendChecksum(QByteArray& file, int typeAt) {
    appendNumber(file,
                 static_cast<quint32>(crc32(0, reinterpret_cast<const Bytef*>(file.constData() + typeAt),
                                            static_cast<uInt>(file.size() - typeAt))));
}

/// The zlib stream (RFC 1950) as one chunk.
void appendPixels(QByteArray& file, const QImage& image, std::size_t bytesPerPixel) {
    SheetStream stream(image, bytesPerPixel);
    const std::vector<Band>& bands = stream.deflate();
    std::size_t size = 2 + 4;
    for (const Band& band : bands)
        size += band.deflated.size();
    file.reserve(file.size() + static_cast<int>(size + 2 * pngChunkFrame));
    appendNumber(file, static_cast<quint32>(size));
    const int typeAt = file.size();
    file.append("IDAT\x78\xda", 6); // 32 KiB window, slowest compression
    uLong checksum = 1;
    const std::size_t rowBytes = static_cast<std::size_t>(image.width()) * bytesPerPixel + 1;
    for (const Band& band : bands) {
        file.append(reinterpret_cast<const char*>(band.deflated.data()),
                    static_cast<int>(band.deflated.size()));
        checksum = adler32_combine(checksum, band.checksum, static_cast<z_off_t>(band.rows * rowBytes));
    }
    appendNumber(file, static_cast<quint32>(checksum));
    appendChecksum(file, typeAt);
}

QByteArray byToolkit(const QImage& image) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    writer.setQuality(0);
    return writer.write(image) ? buffer.data() : QByteArray();
}

/// The toolkit's file of one pixel tells all chunks but the picture's own; empty for kinds that aren't
/// written here.
QByteArray withPixels(const QByteArray& onePixel, const QImage& image) {
    const bool hasAlpha = image.hasAlphaChannel();
    QByteArray file(pngSignature().data(), static_cast<int>(pngSignature().size()));
    for (const PngChunk& chunk : splitPng(onePixel)) {
        if (chunk.type == "IDAT") {
            appendPixels(file, image, hasAlpha ? 4 : 3);
            continue;
        }
        const int at = file.size();
        file.append(chunk.whole.data(), static_cast<int>(chunk.whole.size()));
        if (chunk.type != "IHDR")
            continue;
        // Length and type, then width, height, depth and colour type.
        const int colorType = hasAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB;
        if (file.at(at + 16) != 8 || file.at(at + 17) != colorType)
            return {};
        qToBigEndian(static_cast<quint32>(image.width()), file.data() + at + 8);
        qToBigEndian(static_cast<quint32>(image.height()), file.data() + at + 12);
        file.chop(4);
        appendChecksum(file, at + 4);
    }
    return file;
}

} // namespace

QByteArray encodeSheetPng(const QImage& image) {
    const QByteArray onePixel = byToolkit(image.copy(0, 0, 1, 1));
    if (onePixel.isEmpty())
        return {};
    QByteArray file;
    QByteArray toolkit;
    // What is good for large pictures isn't always for small ones.
    const bool isSmall = static_cast<std::size_t>(image.sizeInBytes()) <= smallBytes;
    sideBySide(isSmall ? 2 : 1, [&](std::size_t number) {
        if (number == 0)
            file = withPixels(onePixel, image);
        else
            toolkit = byToolkit(image);
    });
    return !toolkit.isEmpty() && toolkit.size() < file.size() ? toolkit : file;
}
