#include "PngRowsCache.h"

namespace {

constexpr std::size_t keptPicture = 32 << 20; // bytes; six filters may make rows of that size

} // namespace

PngRowsCache::PngRowsCache(const PngPicture& picture)
    : m_picture(picture), m_keeps(picture.pixels.size() <= keptPicture) {}

std::shared_ptr<const PngFilteredRows> PngRowsCache::rows(int filter) {
    Place& place = m_places.at(static_cast<std::size_t>(filter));
    const std::lock_guard<std::mutex> lock(place.mutex);
    std::shared_ptr<const PngFilteredRows> rows = place.used.lock();
    if (!rows) {
        rows =
            std::make_shared<const PngFilteredRows>(filterRows(m_picture, static_cast<DeltaFilter>(filter)));
        place.used = rows;
        if (m_keeps)
            place.kept = rows;
    }
    return rows;
}
