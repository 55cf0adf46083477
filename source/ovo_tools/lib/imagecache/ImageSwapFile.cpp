#include "ImageSwapFile.h"

#include <QDataStream>
#include <QFile>
#include <QVector>

#include <algorithm>
#include <cstring>

#include <fcntl.h>

namespace {

// Bytes that are compressed at once: little beside an image, much beside the cost of a block.
constexpr int blockBytes = 1 << 20;
constexpr int fastest = 1;

int rowsPerBlock(const QImage& image) { return std::max(1, blockBytes / image.bytesPerLine()); }

int blockSize(const QImage& image, int firstRow) {
    return std::min(rowsPerBlock(image), image.height() - firstRow) * image.bytesPerLine();
}

bool openNew(QFile& file) {
    QFile::remove(file.fileName());
    const int descriptor =
        ::open(QFile::encodeName(file.fileName()).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    return descriptor >= 0 && file.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle);
}

void writeImage(QDataStream& stream, const QImage& image) {
    stream << qint32(image.format()) << image.size() << image.colorTable();
    for (int row = 0; row < image.height(); row += rowsPerBlock(image))
        stream << qCompress(image.constScanLine(row), blockSize(image, row), fastest);
}

QImage readImage(QDataStream& stream) {
    qint32 format = 0;
    QSize size;
    QVector<QRgb> colorTable;
    stream >> format >> size >> colorTable;
    if (stream.status() != QDataStream::Ok || format <= QImage::Format_Invalid ||
        format >= QImage::NImageFormats)
        return QImage();
    QImage image(size, QImage::Format(format));
    if (image.isNull())
        return QImage();
    image.setColorTable(colorTable);
    for (int row = 0; row < image.height(); row += rowsPerBlock(image)) {
        QByteArray block;
        stream >> block;
        if (stream.status() != QDataStream::Ok)
            return QImage();
        block = qUncompress(block);
        if (block.size() != blockSize(image, row))
            return QImage();
        std::memcpy(image.scanLine(row), block.constData(), size_t(block.size()));
    }
    return image;
}

} // namespace

bool ImageSwapFile::write(const QString& fileName, const QImage& image) {
    QFile file(fileName);
    if (!openNew(file))
        return false;
    QDataStream stream(&file);
    writeImage(stream, image);
    const bool flushed = file.flush();
    file.close();
    const bool written =
        flushed && stream.status() == QDataStream::Ok && file.error() == QFileDevice::NoError;
    if (!written)
        QFile::remove(fileName);
    return written;
}

QImage ImageSwapFile::read(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QImage();
    QDataStream stream(&file);
    return readImage(stream);
}
