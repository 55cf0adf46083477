#include "LoadSpriteVisitor.h"

#include "SpriteFileNode.h"

#include <QFuture>
#include <QThreadPool>
#include <QtConcurrent>

#include <deque>

void LoadSpriteVisitor::visitFile(SpriteFileNode& node) {
    if (node.needsReading())
        m_toRead.append(&node);
}

void LoadSpriteVisitor::load() {
    // Few images ahead of the one that is taken next: what waits here isn't counted by the image cache.
    const auto window = size_t(2 * QThreadPool::globalInstance()->maxThreadCount());
    std::deque<QFuture<QImage>> ahead;
    int next = 0;
    for (SpriteFileNode* node : qAsConst(m_toRead)) {
        for (; next < m_toRead.size() && ahead.size() < window; ++next)
            ahead.push_back(QtConcurrent::run(&SpriteFileNode::read, m_toRead[next]->fileName()));
        const QImage image = ahead.front().result();
        ahead.pop_front();
        node->take(image);
    }
}
