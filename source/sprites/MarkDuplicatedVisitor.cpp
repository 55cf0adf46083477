#include "MarkDuplicatedVisitor.h"

#include "SpriteImageNode.h"

void MarkDuplicatedVisitor::visitImage(SpriteImageNode& node) {
    constexpr auto conflict = SpriteTreeNode::ErrorClass::NameConflict;
    SpriteImageNode*& first = m_byName[node.spriteName()];
    if (first) {
        const QString text = QStringLiteral("Sprite name already in use");
        first->setError(conflict, text);
        node.setError(conflict, text);
        return;
    }
    first = &node;
    node.clearError(conflict);
}
