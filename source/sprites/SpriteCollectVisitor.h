#pragma once

#include "SpriteTreeVisitor.h"

#include <QList>

/// Collects files and frames in tree order.
class SpriteCollectVisitor : public SpriteTreeVisitor {
public:
    void visitImage(SpriteImageNode& node) override { m_sprites.append(&node); }

    /// Owned by the tree.
    const QList<SpriteImageNode*>& sprites() const { return m_sprites; }

private:
    QList<SpriteImageNode*> m_sprites;
};
