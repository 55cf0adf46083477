#pragma once

#include "SpriteReferenceNode.h"

/// A frame of a Flash movie.
class SpriteReferenceNodeFlash : public SpriteReferenceNode {
public:
    using SpriteReferenceNode::SpriteReferenceNode;

    void accept(SpriteTreeVisitor& visitor) override;
};
