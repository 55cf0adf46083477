#pragma once

#include <QImage>

#include <cstdint>

/// The hq2x filter of Maxim Stepin for 32-bit colour. Each pixel is compared with its eight neighbours in a
/// luma and chroma space (it differs by more than 48 in Y, 7 in U or 6 in V), and the pattern of the 256 that
/// comes out says how each corner of the pixel's 2 x 2 block is blended. Any thread.

/// Prepares the tables of hq2x_32. May be called any number of times, from any thread; the first call does
/// the work.
void hqxInit();

/// Enlarges `width` x `height` pixels 0x??RRGGBB, row after row, to twice the size. `destination` has room
/// for four times the pixels, which get 0 in their top byte. hqxInit() was called before.
void hq2x_32(const uint32_t* source, uint32_t* destination, int width, int height);

/// hq2x with alpha, which the filter doesn't know: colour and alpha go through it apart. ARGB32 in and out; a
/// null image gives a null image. Throws Error (OutOfMemory).
QImage hq2x(const QImage& image);
