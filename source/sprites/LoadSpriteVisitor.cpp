#include "LoadSpriteVisitor.h"

#include "Meanwhile.h"
#include "SpriteFileNode.h"

#include <QThreadPool>

#include <deque>

namespace {

/// The images of the first of these files: what few bytes of a file can claim may be more than is to be held.
QVector<QImage> readFirst(const QStringList& paths) {
    constexpr qint64 enoughBytes = 1 << 22;
    QVector<QImage> images;
    qint64 bytes = 0;
    for (const QString& path : paths) {
        images.append(SpriteFileNode::read(path));
        bytes += images.last().sizeInBytes();
        if (bytes > enoughBytes)
            break;
    }
    return images;
}

/// A call that reads a run of files.
struct Reading {
    explicit Reading(const QStringList& paths)
        : count(paths.size()), images([paths] { return readFirst(paths); }) {}

    const int count;
    Meanwhile<QVector<QImage>> images;
};

} // namespace

void LoadSpriteVisitor::visitFile(SpriteFileNode& node) {
    if (node.needsReading())
        m_toRead.append(&node);
}

QStringList LoadSpriteVisitor::runFrom(int first, int most) const {
    constexpr qint64 smallBytes = 1 << 13;
    const auto isSmall = [this](int i) { return m_toRead[i]->fileData().size() <= smallBytes; };
    int end = first + 1;
    while (end < m_toRead.size() && end - first < most && isSmall(first) && isSmall(end))
        ++end;
    QStringList paths;
    for (int i = first; i < end; ++i)
        paths.append(m_toRead[i]->fileName());
    return paths;
}

void LoadSpriteVisitor::load() {
    // Few images ahead of the one that is taken next: what waits here isn't counted by the image cache.
    const auto window = size_t(2 * QThreadPool::globalInstance()->maxThreadCount());
    std::deque<Reading> ahead;
    // To start a call for each small file would take longer than to read it.
    int longestRun = 4;
    int started = 0;
    int taken = 0;
    while (taken < m_toRead.size()) {
        while (started < m_toRead.size() && ahead.size() < window)
            started += ahead.emplace_back(runFrom(started, longestRun)).count;
        const int end = taken + ahead.front().count;
        const QVector<QImage> images = ahead.front().images.take();
        ahead.pop_front();
        for (const QImage& image : images)
            m_toRead[taken++]->take(image);
        // Small files of large pictures, as others will be.
        if (taken < end)
            longestRun = 1;
        for (int i = end; i-- > taken;)
            ahead.emplace_front(runFrom(i, 1));
    }
}
