#pragma once

#include <QBuffer>
#include <QImage>

/// Gives the bytes to a reader of pictures. Its debug texts aren't wanted.
template <class Reader>
int readPicture(const unsigned char* data, std::size_t size, Reader read) {
    static const auto silence =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    Q_UNUSED(silence)
    QByteArray bytes(reinterpret_cast<const char*>(data), int(size));
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    const QImage image = read(buffer);
    // Every pixel has been written.
    uint sum = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            sum += image.pixel(x, y);
    [[maybe_unused]] static volatile uint sink;
    sink = sum;
    return 0;
}
