#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QImage>

/// What the plug-ins of our own formats share. Their pictures are Format_ARGB32, or Format_RGB32 where the
/// format has no alpha.
namespace PluginImage {

/// A picture of undefined pixels. Null if a side is below 1, if ImageLimits don't allow the size, or if there
/// is no memory.
QImage allocate(qint64 width, qint64 height, QImage::Format format);

/// Row `y` of a picture of ours.
inline QRgb* row(QImage& image, int y) { return reinterpret_cast<QRgb*>(image.scanLine(y)); }
inline const QRgb* row(const QImage& image, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(y));
}

/// Any picture as one of ours.
QImage toPlugin(const QImage& image);

/// False if not all bytes were written.
bool writeAll(QIODevice& device, const QByteArray& bytes);

} // namespace PluginImage
