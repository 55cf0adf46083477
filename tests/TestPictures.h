#pragma once

#include <QImage>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <random>

/// What the letters of a picture stand for: colours of their own, the same in every test.
inline QRgb letterColor(QChar letter) {
    if (letter == QLatin1Char('.'))
        return 0;
    const uint code = letter.unicode();
    return qRgb(code * 37 & 0xFF, code * 101 & 0xFF, code * 211 & 0xFF);
}

/// A picture drawn in the source: a row a string, '.' for transparent pixels, any other letter for an opaque
/// colour.
inline QImage picture(const QStringList& rows) {
    QImage image(rows.isEmpty() ? 0 : rows.first().size(), rows.size(), QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, letterColor(rows[y][x]));
    return image;
}

/// Random pixels of any alpha; equal seeds give equal pictures.
inline QImage noise(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, random());
    return image;
}

/// Pixel by pixel, with the first difference told.
inline testing::AssertionResult samePixels(const QImage& actual, const QImage& expected) {
    if (actual.size() != expected.size() || actual.format() != expected.format())
        return testing::AssertionFailure()
               << actual.width() << "x" << actual.height() << " of format " << actual.format() << ", not "
               << expected.width() << "x" << expected.height() << " of format " << expected.format();
    for (int y = 0; y < actual.height(); ++y)
        for (int x = 0; x < actual.width(); ++x)
            if (actual.pixel(x, y) != expected.pixel(x, y))
                return testing::AssertionFailure() << "pixel " << x << ", " << y << " is " << std::hex
                                                   << actual.pixel(x, y) << ", not " << expected.pixel(x, y);
    return testing::AssertionSuccess();
}
