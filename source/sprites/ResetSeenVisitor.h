#pragma once

#include "SpriteBranchNode.h"
#include "SpriteTreeVisitor.h"

/// Begins a rescan: no node has been seen.
class ResetSeenVisitor : public SpriteTreeVisitor {
public:
    void visitNode(SpriteTreeNode& node) override { node.setSeen(false); }

    void visitBranch(SpriteBranchNode& node) override {
        SpriteTreeVisitor::visitBranch(node);
        node.setSeen(false);
    }
};
