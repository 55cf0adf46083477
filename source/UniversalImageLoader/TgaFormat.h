#pragma once

#include <QIODevice>
#include <QImage>

/// Truevision Targa.

/// Reads colour mapped, true colour and grey files, run-length encoded or not. Null on failure; a refused
/// kind is told on the debug channel.
QImage readTga(QIODevice& device);

/// Writes an uncompressed true colour file, 32 bits a pixel with alpha, else 24. False if a side is above
/// 65535 or the device fails.
bool writeTga(QIODevice& device, const QImage& image);
