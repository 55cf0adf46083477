#include "GImageCache.h"

#include "Error.h"
#include "ImageSwapFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace {

// The same text in both directions: what a user can do about it is the same.
[[noreturn]] void throwFileError(const QString& fileName) {
    throw Error(Error::CacheFile, QStringLiteral("Can't write file %1").arg(fileName));
}

// Where the toolkit finds no such folder it says nothing, and files would land in the root folder.
QString standardFolder() {
    const QString folder = QDir::tempPath();
    return folder.isEmpty() ? qEnvironmentVariable("TMPDIR") : folder;
}

// The process and the entry's address make the name unique among entries and program runs.
QString swapFileName(const QString& folder, const void* entry) {
    return QStringLiteral("%1/sorv.%2.%3")
        .arg(folder)
        .arg(QCoreApplication::applicationPid())
        .arg(reinterpret_cast<quintptr>(entry));
}

} // namespace

GImageCache::Entry::Entry(GImageCache* owner, const QImage& source)
    : size(source.size()), image(source), fileName(swapFileName(owner->m_temporaryFolder, this)),
      isNull(source.isNull()), cache(owner) {}

GImageCache::Entry::~Entry() {
    if (onDisk)
        QFile::remove(fileName);
}

GImageCache* GImageCache::instance() {
    static GImageCache* const cache = new GImageCache;
    return cache;
}

GImageCache::GImageCache(quint64 limit, const QString& temporaryFolder)
    : m_limit(limit), m_temporaryFolder(temporaryFolder.isEmpty() ? standardFolder() : temporaryFolder) {}

GImageCache::~GImageCache() = default;

GImageCache::Entry* GImageCache::add(const QImage& image) {
    auto* entry = new Entry(this, image);
    const std::lock_guard lock(m_mutex);
    append(entry);
    try {
        trim();
    } catch (...) {
        release(entry);
        throw;
    }
    return entry;
}

QImage GImageCache::fetch(Entry* entry) {
    const std::lock_guard lock(m_mutex);
    if (entry->isNull)
        return QImage();
    if (entry->resident) {
        m_entries.splice(m_entries.end(), m_entries, entry->place);
        return entry->image;
    }
    // The image about to come isn't counted: `used` may stand above the limit by it until the next add().
    trim();
    QImage image = ImageSwapFile::read(entry->fileName);
    if (image.size() != entry->size)
        throwFileError(entry->fileName);
    entry->image = image;
    entry->resident = true;
    append(entry);
    return image;
}

void GImageCache::release(Entry* entry) {
    {
        const std::lock_guard lock(m_mutex);
        if (entry->resident && !entry->isNull) {
            m_entries.erase(entry->place);
            m_used -= bytes(*entry);
        }
    }
    delete entry;
}

quint64 GImageCache::used() const {
    const std::lock_guard lock(m_mutex);
    return m_used;
}

quint64 GImageCache::bytes(const Entry& entry) {
    return quint64(entry.size.width()) * quint64(entry.size.height()) * 4;
}

void GImageCache::append(Entry* entry) {
    // A null image takes no memory, so it has no place among those that can make room.
    if (entry->isNull)
        return;
    entry->place = m_entries.insert(m_entries.end(), entry);
    m_used += bytes(*entry);
}

void GImageCache::trim() {
    if (m_used <= m_limit)
        return;
    emit lowMemoryWarning();
    while (m_used > m_limit && !m_entries.empty())
        swapOut(m_entries.front());
}

void GImageCache::swapOut(Entry* entry) {
    // Images in the cache don't change: a file that was written once stays valid.
    if (!entry->onDisk) {
        if (!ImageSwapFile::write(entry->fileName, entry->image))
            throwFileError(entry->fileName);
        entry->onDisk = true;
    }
    entry->resident = false;
    m_entries.erase(entry->place);
    m_used -= bytes(*entry);
    entry->image = QImage();
}
