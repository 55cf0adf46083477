#include "SpriteBranchNode.h"

#include "SpriteFolderNode.h"
#include "SpriteTreeVisitor.h"

SpriteBranchNode::SpriteBranchNode() : SpriteBranchNode(QString(), QString(), FileData()) {}

SpriteBranchNode::SpriteBranchNode(const QString& spriteName, const QString& displayName,
                                   const FileData& fileData)
    : SpriteTreeNode(spriteName, displayName, fileData) {}

SpriteBranchNode::~SpriteBranchNode() { qDeleteAll(m_children); }

void SpriteBranchNode::accept(SpriteTreeVisitor& visitor) { visitor.visitBranch(*this); }

void SpriteBranchNode::append(std::unique_ptr<SpriteTreeNode> node, bool takesPlace) {
    m_children.append(node.get());
    enter(node.release(), takesPlace);
}

void SpriteBranchNode::removeIf(const std::function<bool(const SpriteTreeNode&)>& leaves, Removed& removed) {
    QList<SpriteTreeNode*> kept;
    for (SpriteTreeNode* node : qAsConst(m_children)) {
        if (leaves(*node))
            removed.emplace_back(node);
        else
            kept.append(node);
    }
    if (kept.size() == m_children.size())
        return;
    m_children = kept;
    reindex();
}

void SpriteBranchNode::truncate(int count, Removed& removed) {
    if (count >= m_children.size())
        return;
    while (m_children.size() > count)
        removed.emplace_back(m_children.takeLast());
    reindex();
}

void SpriteBranchNode::enter(SpriteTreeNode* node, bool takesPlace) {
    SpriteTreeNode*& entry = m_byName[node->displayName()];
    if (takesPlace || !entry)
        entry = node;
    if (auto* folder = dynamic_cast<SpriteFolderNode*>(node)) {
        SpriteFolderNode*& folderEntry = m_foldersByName[node->displayName()];
        if (takesPlace || !folderEntry)
            folderEntry = folder;
    }
}

void SpriteBranchNode::reindex() {
    m_byName.clear();
    m_foldersByName.clear();
    for (SpriteTreeNode* node : qAsConst(m_children))
        enter(node, false);
}
