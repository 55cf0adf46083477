#pragma once

#include "SpriteBranchNode.h"
#include "SpriteTreeVisitor.h"

/// Ends a rescan: what wasn't seen leaves the tree.
class PruneUnseenSeenVisitor : public SpriteTreeVisitor {
public:
    /// `removed` takes the nodes.
    explicit PruneUnseenSeenVisitor(SpriteBranchNode::Removed& removed) : m_removed(removed) {}

    void visitBranch(SpriteBranchNode& node) override {
        SpriteTreeVisitor::visitBranch(node);
        node.removeIf([](const SpriteTreeNode& child) { return !child.seen(); }, m_removed);
    }

private:
    SpriteBranchNode::Removed& m_removed;
};
