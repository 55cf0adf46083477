#include "GCachedImage.h"

namespace {
// By name as well, for queued connections.
[[maybe_unused]] const int metaType = qRegisterMetaType<GCachedImage>("GCachedImage");
} // namespace

GCachedImage::GCachedImage(const QImage& image, GImageCache* cache) : m_entry(cache->add(image)) {}

GCachedImage::GCachedImage(const GCachedImage& other) : m_entry(other.m_entry) {
    if (m_entry)
        m_entry->refCount.fetch_add(1, std::memory_order_relaxed);
}

GCachedImage& GCachedImage::operator=(const GCachedImage& other) {
    GCachedImage copy(other);
    std::swap(m_entry, copy.m_entry);
    return *this;
}

GCachedImage& GCachedImage::operator=(GCachedImage&& other) noexcept {
    std::swap(m_entry, other.m_entry);
    return *this;
}

GCachedImage& GCachedImage::operator=(const QImage& image) {
    release();
    m_entry = GImageCache::instance()->add(image);
    return *this;
}

QImage GCachedImage::image() const { return m_entry ? m_entry->cache->fetch(m_entry) : QImage(); }

void GCachedImage::release() {
    GImageCache::Entry* entry = std::exchange(m_entry, nullptr);
    if (entry && entry->refCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
        entry->cache->release(entry);
}
