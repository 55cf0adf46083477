#include "SheetPng.h"
#include "PngChunks.h"

#include <QBuffer>
#include <QColorSpace>
#include <QPainter>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>

namespace {

QImage drawn(QSize size, QImage::Format format, const std::function<QRgb(int, int)>& pixel) {
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, pixel(x, y));
    image = image.convertToFormat(format);
    image.setDotsPerMeterX(2835);
    image.setDotsPerMeterY(2835);
    return image;
}

QImage painted(QSize size, QImage::Format format) {
    QImage image(size, format);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int i = 0; i < 40; ++i) {
        QRadialGradient gradient((i * 97) % size.width(), (i * 61) % size.height(), 20 + i);
        gradient.setColorAt(0, QColor::fromHsv(i * 9, 200, 250, 255 - 4 * i));
        gradient.setColorAt(1, Qt::transparent);
        painter.setBrush(gradient);
        painter.drawEllipse(QPoint((i * 97) % size.width(), (i * 61) % size.height()), 20 + i, 30 + i);
    }
    return image;
}

std::map<std::string, QImage> pictures() {
    std::mt19937 random(3);
    const auto blocks = [](int x, int y) {
        return QRgb((x / 8 * 31 + y / 8 * 17) % 5 * 0x3f2a11 | 0xff000000);
    };
    const auto noise = [&random](int, int) { return QRgb(random()); };
    const auto clear = [](int, int) { return QRgb(0); };
    std::map<std::string, QImage> all;
    all["one pixel"] = drawn({1, 1}, QImage::Format_ARGB32, noise);
    all["nothing"] = drawn({300, 200}, QImage::Format_ARGB32, clear);
    all["noise"] = drawn({64, 300}, QImage::Format_ARGB32, noise);
    all["noise without alpha"] = drawn({64, 64}, QImage::Format_RGB32, noise);
    all["drawn"] = drawn({256, 300}, QImage::Format_ARGB32, blocks);
    all["drawn without alpha"] = drawn({255, 30}, QImage::Format_RGB32, blocks);
    all["a row"] = drawn({5000, 1}, QImage::Format_ARGB32, blocks);
    all["a column"] = drawn({1, 5000}, QImage::Format_ARGB32, blocks);
    all["painted"] = painted({200, 150}, QImage::Format_ARGB32);
    all["premultiplied"] = painted({90, 150}, QImage::Format_ARGB32_Premultiplied);
    // Three bands, the first of them drawn, and one of three rows.
    QImage bands = painted({700, 3 * 374 + 3}, QImage::Format_ARGB32);
    QPainter(&bands).drawImage(0, 0, drawn({700, 400}, QImage::Format_ARGB32, blocks));
    all["bands"] = bands;
    all["text and color space"] = drawn({20, 20}, QImage::Format_ARGB32, blocks);
    all["text and color space"].setText(QStringLiteral("Author"), QStringLiteral("somebody"));
    all["text and color space"].setColorSpace(QColorSpace::SRgb);
    return all;
}

QByteArray byToolkit(const QImage& image) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, "png", 0));
    return buffer.data();
}

/// Every chunk but the pixels.
std::vector<std::string> others(const QByteArray& file) {
    std::vector<std::string> chunks;
    for (const PngChunk& chunk : splitPng(file)) {
        EXPECT_TRUE(chunk.isIntact()) << chunk.type;
        if (chunk.type != "IDAT")
            chunks.emplace_back(chunk.whole);
    }
    return chunks;
}

} // namespace

TEST(SheetPng, isTheToolkitsFileButSmaller) {
    for (const auto& [name, image] : pictures()) {
        const QByteArray toolkit = byToolkit(image);
        const QByteArray ours = encodeSheetPng(image);
        EXPECT_EQ(others(ours), others(toolkit)) << name;
        EXPECT_LE(ours.size(), toolkit.size()) << name;
        EXPECT_EQ(QImage::fromData(ours, "png"), QImage::fromData(toolkit, "png")) << name;
    }
}

TEST(SheetPng, hasTheSameBytesOnAnyNumberOfCores) {
    QThreadPool& pool = *QThreadPool::globalInstance();
    const int cores = pool.maxThreadCount();
    const QImage image = pictures()["bands"];
    std::vector<QByteArray> files;
    for (const int threads : {1, 2, 7}) {
        pool.setMaxThreadCount(threads);
        files.push_back(encodeSheetPng(image));
    }
    pool.setMaxThreadCount(cores);
    EXPECT_EQ(files[0], files[1]);
    EXPECT_EQ(files[0], files[2]);
}

TEST(SheetPng, leavesOtherKindsToTheToolkit) {
    const QImage image = pictures()["drawn"];
    for (const QImage::Format format :
         {QImage::Format_Indexed8, QImage::Format_Grayscale8, QImage::Format_Mono, QImage::Format_RGBA64,
          QImage::Format_Grayscale16})
        EXPECT_TRUE(encodeSheetPng(image.convertToFormat(format)).isEmpty()) << format;
    EXPECT_TRUE(encodeSheetPng(QImage()).isEmpty());
}
