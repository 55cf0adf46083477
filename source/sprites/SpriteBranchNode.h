#pragma once

#include "SpriteTreeNode.h"

#include <QHash>
#include <QList>

#include <functional>
#include <memory>
#include <vector>

class SpriteFolderNode;

/// A node with children, in order of first appearance. An index by name keeps the search for a child constant
/// in time.
class SpriteBranchNode : public SpriteTreeNode {
public:
    /// What takes the nodes that leave the tree: others may still know their addresses.
    using Removed = std::vector<std::unique_ptr<SpriteTreeNode>>;

    SpriteBranchNode();
    SpriteBranchNode(const QString& spriteName, const QString& displayName, const FileData& fileData);
    ~SpriteBranchNode() override;

    void accept(SpriteTreeVisitor& visitor) override;

    /// Owned by this node. The copy is cheap and stays valid while the tree changes.
    QList<SpriteTreeNode*> children() const { return m_children; }

    /// The first child of that display name, or the latest that took another one's place; null if there is
    /// none.
    SpriteTreeNode* child(const QString& displayName) const { return m_byName.value(displayName); }

    /// The same among the folders.
    SpriteFolderNode* folder(const QString& displayName) const { return m_foldersByName.value(displayName); }

    /// Appends the node and owns it. It is found by its name if that is free or `takesPlace` is set.
    void append(std::unique_ptr<SpriteTreeNode> node, bool takesPlace = false);

    /// Moves the children of which `leaves` is true to `removed`.
    void removeIf(const std::function<bool(const SpriteTreeNode&)>& leaves, Removed& removed);

    /// Moves the children from that position on to `removed`.
    void truncate(int count, Removed& removed);

private:
    void enter(SpriteTreeNode* node, bool takesPlace);
    void reindex();

    QList<SpriteTreeNode*> m_children;
    QHash<QString, SpriteTreeNode*> m_byName;
    QHash<QString, SpriteFolderNode*> m_foldersByName;
};
