#pragma once

#include "GImageCache.h"

#include <QImage>
#include <QMetaType>
#include <QSize>

#include <utility>

/// Handle of an image that GImageCache may swap to a temporary file. A value: copies share the image, and the
/// last one gone releases it. Registered as meta type "GCachedImage". Different handles may be used in
/// different threads.
class GCachedImage {
public:
    /// A null handle.
    GCachedImage() = default;

    /// Puts the image into the cache of the process, or into one's own. Throws Error 54 if the cache is full
    /// and can't make room.
    explicit GCachedImage(const QImage& image, GImageCache* cache = GImageCache::instance());

    GCachedImage(const GCachedImage& other);
    GCachedImage(GCachedImage&& other) noexcept : m_entry(std::exchange(other.m_entry, nullptr)) {}
    ~GCachedImage() { release(); }

    GCachedImage& operator=(const GCachedImage& other);
    GCachedImage& operator=(GCachedImage&& other) noexcept;

    /// Lets go of the old image, then puts the new one into the cache of the process. Throws like the
    /// constructor; the handle is null then.
    GCachedImage& operator=(const QImage& image);

    /// The image, read back if it was swapped out; null for a null handle. Throws Error 54 if that fails.
    QImage image() const;

    /// In pixels, at no cost; (-1, -1) for a null handle.
    QSize size() const { return m_entry ? m_entry->size : QSize(-1, -1); }

    /// True for a null handle and for the handle of a null image.
    bool isNull() const { return !m_entry || m_entry->isNull; }

private:
    void release();

    GImageCache::Entry* m_entry = nullptr;
};

Q_DECLARE_METATYPE(GCachedImage)
