#pragma once

#include <QByteArray>
#include <QIODevice>

#include <optional>

/// Whether a PNG file has texts or suggested palettes, which are no part of the picture: the toolkit inflates
/// and keeps them all, gigabytes from a file of some hundred kilobytes. `device`: open and random access.
bool hasPngTexts(QIODevice& device);

/// The file without them, up to its end mark. None if more than `most` bytes are
/// left.
std::optional<QByteArray> withoutPngTexts(QIODevice& device, qint64 most);

/// Whether the PNG pictures inside a file of another format have more compressed texts than any tool writes.
bool hasManyPngTexts(const QByteArray& file);
