#pragma once

#include <QByteArray>

#include <string_view>
#include <vector>

/// One chunk of a PNG file. Points into the file's bytes, which have to outlive it.
struct PngChunk {
    std::string_view type; ///< four letters
    std::string_view data;
    std::string_view whole; ///< with length, type and checksum

    /// Ancillary chunks may be unknown to a reader: the picture can be shown without them.
    bool isAncillary() const { return (type[0] & 0x20) != 0; }
    bool isIntact() const; ///< whether the checksum is right
};

/// What a chunk takes in a file beside its data: length, type and checksum, in bytes.
inline constexpr std::size_t pngChunkFrame = 12;

/// The eight bytes that a PNG file begins with.
std::string_view pngSignature();

/// The chunks of a PNG file up to IEND. Throws Error if the file is none, or ends early.
std::vector<PngChunk> splitPng(const QByteArray& file);
