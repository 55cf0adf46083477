#include "SpriteFlashNode.h"

#include "SpriteTreeVisitor.h"

void SpriteFlashNode::accept(SpriteTreeVisitor& visitor) { visitor.visitFlash(*this); }

void SpriteFlashNode::setSeen(bool seen) {
    SpriteBranchNode::setSeen(seen);
    for (SpriteTreeNode* frame : children())
        frame->setSeen(seen);
}

QImage SpriteFlashNode::icon() {
    static const QImage flash(QStringLiteral(":resources/Flash.png"));
    return flash;
}
