#include "PpmFormat.h"

#include "ByteStream.h"
#include "PluginImage.h"

#include <algorithm>
#include <array>
#include <vector>

using UniversalImageLoader::PPM_Format;

namespace {

constexpr int endOfFile = -1;

bool isSpace(int byte) { return byte == ' ' || (byte >= '\t' && byte <= '\r'); }
bool isLineEnd(int byte) { return byte == '\n' || byte == '\r' || byte == endOfFile; }

/// Reads words between white space as decimal numbers. A word that begins with "#" is a comment to the end of
/// its line.
class NumberReader {
public:
    enum Result { Number, End, Fault };

    explicit NumberReader(ByteStream& stream) : m_stream(stream) {}

    /// Fault for a word that is no number, and for one above what any picture needs.
    Result read(int& number) {
        int byte = firstOfWord();
        if (byte == endOfFile)
            return End;
        for (number = 0; byte != endOfFile && !isSpace(byte); byte = m_stream.byte()) {
            constexpr int maximum = 1'000'000;
            if (byte < '0' || byte > '9' || number > maximum)
                return Fault;
            number = 10 * number + (byte - '0');
        }
        m_delimiter = byte;
        return Number;
    }

    /// The byte behind the last number, which is read already.
    int delimiter() const { return m_delimiter; }

private:
    int firstOfWord() {
        int byte = m_stream.byte();
        while (isSpace(byte) || byte == '#') {
            if (byte == '#')
                while (!isLineEnd(byte))
                    byte = m_stream.byte();
            else
                byte = m_stream.byte();
        }
        return byte;
    }

    ByteStream& m_stream;
    int m_delimiter = endOfFile;
};

/// False at a fault; the end of the file leaves zeros.
bool readAscii(NumberReader& numbers, quint8* samples, int count) {
    std::fill_n(samples, count, quint8{0});
    for (int i = 0; i < count; ++i) {
        int number = 0;
        const NumberReader::Result result = numbers.read(number);
        if (result == NumberReader::Fault || number > 255)
            return false;
        if (result == NumberReader::End)
            return true;
        samples[i] = static_cast<quint8>(number);
    }
    return true;
}

void readBinary(ByteStream& stream, quint8* samples, int count) {
    const auto read = static_cast<int>(stream.readSome(samples, count));
    std::fill(samples + read, samples + count, quint8{0});
}

QByteArray binaryRow(const QRgb* row, int width) {
    QByteArray bytes(3 * width, Qt::Uninitialized);
    char* to = bytes.data();
    for (int x = 0; x < width; ++x) {
        *to++ = static_cast<char>(qRed(row[x]));
        *to++ = static_cast<char>(qGreen(row[x]));
        *to++ = static_cast<char>(qBlue(row[x]));
    }
    return bytes;
}

using Words = std::array<QByteArray, 256>;

/// Each sample in decimal, followed by a blank, which the last one of a row has too.
Words sampleWords() {
    Words words;
    for (int sample = 0; sample < 256; ++sample)
        words[static_cast<std::size_t>(sample)] = QByteArray::number(sample) + ' ';
    return words;
}

QByteArray asciiRow(const QRgb* row, int width, const Words& words) {
    QByteArray text;
    text.reserve(12 * width + 1);
    for (int x = 0; x < width; ++x)
        for (const int sample : {qRed(row[x]), qGreen(row[x]), qBlue(row[x])})
            text.append(words[static_cast<std::size_t>(sample)]);
    return text.append('\n');
}

} // namespace

QImage readPpm(QIODevice& device, PPM_Format* flavour) {
    ByteStream stream(device);
    const int magic = stream.byte();
    const int kind = stream.byte();
    if (magic != 'P' || (kind != '3' && kind != '6'))
        return {};
    NumberReader numbers(stream);
    int width = 0, height = 0, maximum = 0;
    for (int* number : {&width, &height, &maximum})
        if (numbers.read(*number) != NumberReader::Number)
            return {};
    // Behind the third number stands one byte, or two if the line ends as on other systems; no comment.
    if (numbers.delimiter() == '\r')
        stream.byte();
    QImage image = maximum == 255 ? PluginImage::allocate(width, height, QImage::Format_RGB32) : QImage();
    if (image.isNull())
        return {};
    *flavour = kind == '3' ? UniversalImageLoader::ascii : UniversalImageLoader::binary;
    std::vector<quint8> samples(3 * static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y) {
        if (kind == '6')
            readBinary(stream, samples.data(), 3 * width);
        else if (!readAscii(numbers, samples.data(), 3 * width))
            return {};
        QRgb* row = PluginImage::row(image, y);
        for (int x = 0; x < width; ++x)
            row[x] = qRgb(samples[3 * x], samples[3 * x + 1], samples[3 * x + 2]);
    }
    return image;
}

bool writePpm(QIODevice& device, const QImage& image, PPM_Format flavour) {
    const bool isAscii = flavour == UniversalImageLoader::ascii;
    const QByteArray size = QByteArray::number(image.width()) + ' ' + QByteArray::number(image.height());
    const QByteArray comment = isAscii ? "P3\n# Created by UIL library\n" : "P6\n";
    if (image.isNull() || !PluginImage::writeAll(device, comment + size + "\n255\n"))
        return false;
    const QImage pixels = PluginImage::toPlugin(image);
    const Words words = sampleWords();
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* row = PluginImage::row(pixels, y);
        if (!PluginImage::writeAll(device, isAscii ? asciiRow(row, image.width(), words)
                                                   : binaryRow(row, image.width())))
            return false;
    }
    return true;
}
