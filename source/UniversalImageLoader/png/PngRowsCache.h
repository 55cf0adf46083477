#pragma once

#include "PngFilteredRows.h"

#include <array>
#include <memory>
#include <mutex>

/// The filtered rows of a picture, made when they are needed first. Rows of pictures of ordinary size are
/// kept, others only as long as somebody uses them. Any thread may call.
class PngRowsCache {
public:
    /// `picture` has to outlive the cache and stay as it is.
    explicit PngRowsCache(const PngPicture& picture);

    /// Throws Error, std::bad_alloc.
    std::shared_ptr<const PngFilteredRows> rows(int filter);

private:
    struct Place {
        std::mutex mutex;
        std::weak_ptr<const PngFilteredRows> used;
        std::shared_ptr<const PngFilteredRows> kept;
    };

    const PngPicture& m_picture;
    const bool m_keeps;
    std::array<Place, 6> m_places; ///< by filter
};
