#pragma once

#include "PngOptions.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <functional>

/// Makes the bytes of a PNG file; empty if that fails. Called on any thread.
using PngSource = std::function<QByteArray()>;

/// Writes a PNG file anew, smaller if possible, with the same pixels: its image type is reduced, then the
/// picture deflated in all ways that the options ask for. `picture` is a file with the pixels and everything
/// beside them, however large its data; `original` makes the file that the result is compared with and, if
/// nothing was gained, a copy of. It isn't called when the result is written anew in any case. `output` is
/// open for writing. Empty on success, else a text that says what failed; the output then stays as far as it
/// got.
QString optimizePng(const QByteArray& picture, const PngSource& original, QIODevice& output,
                    const PngOptions& options);

/// The same for one file that is both.
QString optimizePng(const QByteArray& file, QIODevice& output, const PngOptions& options);
