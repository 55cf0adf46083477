#pragma once

#include <QByteArray>

/// A PNG file without its texts and suggested palettes, which are no part of the picture: the toolkit would
/// inflate and keep them all, gigabytes from a file of some hundred kilobytes. What is no PNG file, or broken
/// from some place on, stays as it is from there.
QByteArray withoutPngTexts(const QByteArray& file);

/// Whether the PNG pictures inside a file of another format have more compressed texts than any tool writes.
bool hasManyPngTexts(const QByteArray& file);
