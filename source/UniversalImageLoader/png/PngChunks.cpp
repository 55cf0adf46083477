#include "PngChunks.h"

#include "Error.h"

#include <QtEndian>

#include <zlib.h>

using namespace std::string_view_literals;

bool PngChunk::isIntact() const {
    const auto* typed = reinterpret_cast<const Bytef*>(type.data());
    const auto* stored = whole.data() + whole.size() - 4;
    return crc32(crc32(0, nullptr, 0), typed, static_cast<uInt>(whole.size() - 8)) ==
           qFromBigEndian<quint32>(stored);
}

std::string_view pngSignature() { return "\x89PNG\r\n\x1a\n"sv; }

std::vector<PngChunk> splitPng(const QByteArray& file) {
    const std::string_view bytes(file.constData(), static_cast<std::size_t>(file.size()));
    std::vector<PngChunk> chunks;
    if (bytes.starts_with(pngSignature()))
        for (std::string_view left = bytes.substr(8); left.size() >= pngChunkFrame;) {
            const std::size_t length = qFromBigEndian<quint32>(left.data());
            if (length > left.size() - pngChunkFrame)
                break;
            chunks.push_back(
                {left.substr(4, 4), left.substr(8, length), left.substr(0, length + pngChunkFrame)});
            left.remove_prefix(length + pngChunkFrame);
            if (chunks.back().type == "IEND")
                return chunks;
        }
    throw Error(Error::TextureFile, QStringLiteral("Can't read the input file or unexpected end of file"));
}
