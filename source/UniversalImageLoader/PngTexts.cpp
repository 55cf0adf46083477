#include "PngTexts.h"

#include "PngChunks.h"

#include <QtEndian>

#include <algorithm>

using namespace std::string_view_literals;

namespace {

constexpr std::string_view dropped[] = {"tEXt"sv, "zTXt"sv, "iTXt"sv, "sPLT"sv};

bool isDropped(std::string_view type) {
    return std::find(std::begin(dropped), std::end(dropped), type) != std::end(dropped);
}

} // namespace

QByteArray withoutPngTexts(const QByteArray& file) {
    std::string_view left(file.constData(), static_cast<std::size_t>(file.size()));
    if (!left.starts_with(pngSignature()))
        return file;
    QByteArray kept;
    const auto keep = [&](std::size_t size) {
        kept.append(left.data(), static_cast<int>(size));
        left.remove_prefix(size);
    };
    kept.reserve(file.size());
    keep(pngSignature().size());
    while (left.size() >= pngChunkFrame) {
        const std::size_t length = qFromBigEndian<quint32>(left.data());
        if (length > left.size() - pngChunkFrame)
            break;
        if (isDropped(left.substr(4, 4)))
            left.remove_prefix(length + pngChunkFrame);
        else
            keep(length + pngChunkFrame);
    }
    keep(left.size());
    return kept;
}

bool hasManyPngTexts(const QByteArray& file) {
    constexpr int many = 8;
    return file.count("zTXt") + file.count("iTXt") > many;
}
