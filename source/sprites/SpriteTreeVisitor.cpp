#include "SpriteTreeVisitor.h"

#include "SpriteFileNode.h"
#include "SpriteFlashNode.h"
#include "SpriteFolderNode.h"
#include "SpriteReferenceNodeFlash.h"

SpriteTreeVisitor::~SpriteTreeVisitor() = default;

void SpriteTreeVisitor::visitNode(SpriteTreeNode&) {}

void SpriteTreeVisitor::visitImage(SpriteImageNode& node) { visitNode(node); }

void SpriteTreeVisitor::visitFile(SpriteFileNode& node) { visitImage(node); }

void SpriteTreeVisitor::visitFlashReference(SpriteReferenceNodeFlash& node) { visitImage(node); }

void SpriteTreeVisitor::visitBranch(SpriteBranchNode& node) {
    const QList<SpriteTreeNode*> children = node.children();
    for (SpriteTreeNode* child : children)
        child->accept(*this);
}

void SpriteTreeVisitor::visitFolder(SpriteFolderNode& node) { visitBranch(node); }

void SpriteTreeVisitor::visitFlash(SpriteFlashNode& node) { visitBranch(node); }
