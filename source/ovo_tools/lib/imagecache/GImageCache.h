#pragma once

#include <QImage>
#include <QObject>
#include <QString>

#include <atomic>
#include <list>
#include <mutex>

/// Bounds what images cost in memory: above the limit the least recently used ones go to temporary files.
/// Users hold images through GCachedImage and don't come here. Any thread may call; one recursive mutex
/// guards all.
class GImageCache : public QObject {
    Q_OBJECT

public:
    /// What the handles of one image share. Everything but `refCount` and the constants is guarded by the
    /// cache.
    struct Entry {
        Entry(GImageCache* owner, const QImage& source);
        ~Entry(); ///< removes the temporary file if there is one

        std::atomic<int> refCount = 1;
        const QSize size; ///< pixels, known without the image in memory
        QImage image;     ///< null while swapped out
        bool resident = true;
        bool onDisk = false; ///< the temporary file is there and complete
        const QString fileName;
        const bool isNull;
        GImageCache* const cache;
        std::list<Entry*>::iterator place; ///< in `m_entries`, while resident

        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;
    };

    /// 1 GiB. Fixed: the program has no way of changing it.
    static constexpr quint64 standardLimit = 0x40000000;

    /// The cache of the process, made at first use and never destroyed, so that a handle may outlive
    /// everything.
    static GImageCache* instance();

    /// A cache of one's own, for a limit (bytes) or a folder for temporary files of one's own. Has to outlive
    /// its handles.
    explicit GImageCache(quint64 limit = standardLimit, const QString& temporaryFolder = QString());
    ~GImageCache() override;

    /// A new entry with one reference, which shares the image's pixels. Throws Error 54, and keeps nothing,
    /// if an image had to make room and can't be written.
    Entry* add(const QImage& image);

    /// The image, read back if it was swapped out; shares the pixels with the entry. Throws Error 54 if a
    /// temporary file can't be written or read.
    QImage fetch(Entry* entry);

    /// Deletes the entry. Called by the handle that dropped the last reference.
    void release(Entry* entry);

    /// Bytes of the images in memory, counted as width * height * 4 whatever the format.
    quint64 used() const;

signals:
    /// Images are about to be swapped out. Emitted with the mutex held, in the thread that needs room:
    /// connect queued.
    void lowMemoryWarning();

private:
    static quint64 bytes(const Entry& entry);
    void append(Entry* entry);
    void trim();
    void swapOut(Entry* entry);

    mutable std::recursive_mutex m_mutex;
    std::list<Entry*> m_entries; ///< those in memory that count, least recently used first
    const quint64 m_limit;
    quint64 m_used = 0;
    const QString m_temporaryFolder;
};
