#pragma once

#include <QImage>

/// Throws Error (OutOfMemory).
[[noreturn]] void throwOutOfMemory();

/// An image whose pixels are not set yet, with sides of at least 1. Throws Error (OutOfMemory) where the
/// toolkit would give a null image.
QImage newImage(qint64 width, qint64 height, QImage::Format format = QImage::Format_ARGB32);

inline QImage newImage(const QSize& size) { return newImage(size.width(), size.height()); }

/// The image in QImage::Format_ARGB32, without a copy if it is so already. Throws Error (OutOfMemory). A null
/// image gives a null image.
QImage toArgb32(const QImage& image);
