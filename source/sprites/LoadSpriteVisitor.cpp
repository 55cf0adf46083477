#include "LoadSpriteVisitor.h"

#include "Meanwhile.h"
#include "SpriteFileNode.h"

#include <QThreadPool>

#include <deque>

void LoadSpriteVisitor::visitFile(SpriteFileNode& node) {
    if (node.needsReading())
        m_toRead.append(&node);
}

void LoadSpriteVisitor::load() {
    // Few images ahead of the one that is taken next: what waits here isn't counted by the image cache.
    const auto window = size_t(2 * QThreadPool::globalInstance()->maxThreadCount());
    std::deque<Meanwhile<QImage>> ahead;
    int next = 0;
    for (SpriteFileNode* node : qAsConst(m_toRead)) {
        for (; next < m_toRead.size() && ahead.size() < window; ++next)
            ahead.emplace_back([path = m_toRead[next]->fileName()] { return SpriteFileNode::read(path); });
        const QImage image = ahead.front().take();
        ahead.pop_front();
        node->take(image);
    }
}
