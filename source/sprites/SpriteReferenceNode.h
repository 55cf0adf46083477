#pragma once

#include "SpriteImageNode.h"

/// A sprite that is a part of another file.
class SpriteReferenceNode : public SpriteImageNode {
public:
    /// `index` counts the parts from 0.
    SpriteReferenceNode(const QString& spriteName, const QString& displayName, const FileData& fileData,
                        int index)
        : SpriteImageNode(spriteName, displayName, fileData), m_index(index) {}

    int index() const { return m_index; }

private:
    const int m_index;
};
