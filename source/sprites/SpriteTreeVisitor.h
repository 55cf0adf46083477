#pragma once

class SpriteBranchNode;
class SpriteFileNode;
class SpriteFlashNode;
class SpriteFolderNode;
class SpriteImageNode;
class SpriteReferenceNodeFlash;
class SpriteTreeNode;

/// Walks a tree of sprite sources. A node's accept() calls the operation of its own class, and each passes on
/// to the more general one unless it is overridden.
class SpriteTreeVisitor {
public:
    virtual ~SpriteTreeVisitor();

    /// Does nothing. Of the node kinds only leaves come here by themselves.
    virtual void visitNode(SpriteTreeNode& node);

    virtual void visitImage(SpriteImageNode& node);
    virtual void visitFile(SpriteFileNode& node);
    virtual void visitFlashReference(SpriteReferenceNodeFlash& node);

    /// Visits every child, in the order and number that they have at the call.
    virtual void visitBranch(SpriteBranchNode& node);

    virtual void visitFolder(SpriteFolderNode& node);
    virtual void visitFlash(SpriteFlashNode& node);
};
