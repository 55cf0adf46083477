#pragma once

#include "SpriteBranchNode.h"

/// A Flash movie; its frames are its children.
class SpriteFlashNode : public SpriteBranchNode {
public:
    using SpriteBranchNode::SpriteBranchNode;

    void accept(SpriteTreeVisitor& visitor) override;

    /// Of the frames too: they are there as long as the movie is.
    void setSeen(bool seen) override;

    QImage icon() override;
};

Q_DECLARE_METATYPE(SpriteFlashNode*)
