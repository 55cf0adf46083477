#pragma once

#include "Error.h"
#include "ImageLoader.h"
#include "PngFile.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <random>

using Options = QHash<QString, QVariant>;

inline QImage drawn(QImage::Format format, const std::function<QRgb(int, int)>& pixel,
                    QSize size = {61, 47}) {
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, pixel(x, y));
    QImage result = image.convertToFormat(format);
    result.setDotsPerMeterX(2835);
    result.setDotsPerMeterY(2835);
    result.setText(QStringLiteral("Author"), QStringLiteral("somebody"));
    return result;
}

/// So many colours in soft shapes.
inline QImage colors(int count, QImage::Format format = QImage::Format_ARGB32) {
    return drawn(format, [count](int x, int y) {
        const int number = (x * y / 3 + x) % count;
        return qRgba(number % 256, number / 256 * 40, 9, 255);
    });
}

inline QImage soft(int x) {
    return drawn(QImage::Format_ARGB32,
                 [x](int a, int b) { return qRgba(a * 4, b * 5, (a ^ b) + x, 255 - (a * b) % 256); });
}

inline QImage noise(QSize size) {
    std::mt19937 random(1);
    return drawn(
        QImage::Format_ARGB32, [&](int, int) { return QRgb(random()); }, size);
}

inline QByteArray toolkitFile(const QImage& image) {
    QBuffer buffer;
    EXPECT_TRUE(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "PNG"));
    return buffer.data();
}

class PngOptimizerTest : public testing::Test {
protected:
    QString path(const char* name = "sheet.png") const { return folder.filePath(QString::fromLatin1(name)); }

    static QByteArray content(const QString& file) {
        QFile in(file);
        EXPECT_TRUE(in.open(QIODevice::ReadOnly));
        return in.readAll();
    }

    /// The file that the plug-in writes.
    QByteArray saved(const QImage& image, const Options& options) const {
        EXPECT_TRUE(loader.save(path(), QStringLiteral("png"), image, options));
        return content(path());
    }
    QByteArray saved(const QImage& image, int level) const {
        return saved(image, {{QStringLiteral("PresetOptimization"), level}});
    }

    /// What saving throws.
    QString fault(const QString& file, const QImage& image, const Options& options = {}) const {
        try {
            loader.save(file, QStringLiteral("png"), image, options);
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), 12);
            return error.message();
        }
        return {};
    }

    QTemporaryDir folder;
    QtUniversalImageLoader::ImageLoader loader;
};
