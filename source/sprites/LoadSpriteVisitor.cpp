#include "LoadSpriteVisitor.h"

#include "Meanwhile.h"
#include "SpriteFileNode.h"

#include <QThreadPool>

#include <deque>
#include <vector>

namespace {

using Run = QList<SpriteFileNode*>;

/// Files in runs for one call each: to start one for every small file would take longer than to read it.
std::vector<Run> runsOf(const QList<SpriteFileNode*>& nodes) {
    constexpr qint64 runBytes = 1 << 15;
    std::vector<Run> runs;
    qint64 bytes = 0;
    for (SpriteFileNode* node : nodes) {
        const qint64 size = node->fileData().size();
        bytes += size;
        if (runs.empty() || bytes > runBytes) {
            runs.emplace_back();
            bytes = size;
        }
        runs.back().append(node);
    }
    return runs;
}

QStringList pathsOf(const Run& run) {
    QStringList paths;
    for (const SpriteFileNode* node : run)
        paths.append(node->fileName());
    return paths;
}

/// The images of the first of these files: what few bytes of a file can claim may be more than is to be held.
QVector<QImage> readFirst(const QStringList& paths) {
    constexpr qint64 enoughBytes = 1 << 24;
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

} // namespace

void LoadSpriteVisitor::visitFile(SpriteFileNode& node) {
    if (node.needsReading())
        m_toRead.append(&node);
}

void LoadSpriteVisitor::load() {
    // Few images ahead of the one that is taken next: what waits here isn't counted by the image cache.
    const auto window = size_t(2 * QThreadPool::globalInstance()->maxThreadCount());
    const std::vector<Run> runs = runsOf(m_toRead);
    std::deque<Meanwhile<QVector<QImage>>> ahead;
    auto next = runs.begin();
    for (const Run& run : runs) {
        for (; next != runs.end() && ahead.size() < window; ++next)
            ahead.emplace_back([paths = pathsOf(*next)] { return readFirst(paths); });
        const QVector<QImage> images = ahead.front().take();
        ahead.pop_front();
        for (int i = 0; i < run.size(); ++i)
            run[i]->take(i < images.size() ? images[i] : SpriteFileNode::read(run[i]->fileName()));
    }
}
