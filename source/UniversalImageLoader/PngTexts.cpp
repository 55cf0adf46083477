#include "PngTexts.h"

#include "PngChunks.h"

#include <QtEndian>

#include <algorithm>

using namespace std::string_view_literals;

namespace {

constexpr qint64 headSize = 8; ///< of a chunk: length and type

bool isText(std::string_view type) {
    constexpr std::string_view texts[] = {"tEXt"sv, "zTXt"sv, "iTXt"sv, "sPLT"sv};
    return std::find(std::begin(texts), std::end(texts), type) != std::end(texts);
}

/// Calls `visit` with place, size and type of each chunk until it returns false; one that passes the end of
/// the file is cut there, and the last.
template <class Visit>
void forChunks(QIODevice& device, Visit visit) {
    const qint64 end = device.size();
    auto place = static_cast<qint64>(pngSignature().size());
    while (device.seek(place)) {
        const QByteArray head = device.read(headSize);
        if (head.size() < headSize)
            return;
        const qint64 declared = qint64{qFromBigEndian<quint32>(head.constData())} + qint64{pngChunkFrame};
        const qint64 size = std::min(declared, end - place);
        const std::string_view type(head.constData() + 4, 4);
        if (!visit(place, size, type) || type == "IEND"sv)
            return;
        place += size;
    }
}

} // namespace

bool hasPngTexts(QIODevice& device) {
    bool found = false;
    forChunks(device, [&found](qint64, qint64, std::string_view type) {
        found = isText(type);
        return !found;
    });
    return found;
}

std::optional<QByteArray> withoutPngTexts(QIODevice& device, qint64 most) {
    QByteArray kept(pngSignature().data(), static_cast<int>(pngSignature().size()));
    bool fits = true;
    forChunks(device, [&](qint64 place, qint64 size, std::string_view type) {
        if (isText(type))
            return true;
        fits = size <= most - kept.size() && device.seek(place);
        if (fits)
            kept.append(device.read(size));
        return fits;
    });
    return fits ? std::optional(kept) : std::nullopt;
}

bool hasManyPngTexts(const QByteArray& file) {
    constexpr int many = 8;
    return file.count("zTXt") + file.count("iTXt") > many;
}
