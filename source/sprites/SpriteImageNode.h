#pragma once

#include "GCachedImage.h"
#include "SpriteTreeNode.h"

/// A node with an image: a leaf of the tree, and a sprite.
class SpriteImageNode : public SpriteTreeNode {
public:
    using SpriteTreeNode::SpriteTreeNode;

    /// Null before the first load and after one that failed; otherwise normalized().
    const GCachedImage& image() const { return m_image; }

    /// Takes the image, normalized(), and is changed then. Throws Error 54 if the image cache is full and
    /// can't make room.
    void setImage(const QImage& image) { setNormalizedImage(normalized(image)); }

    /// The same for an image that went through normalized() already.
    void setNormalizedImage(const QImage& image);

    /// 24 x 24 pixels, ARGB32: the sprite scaled to fit, in the middle. Made once for an image.
    QImage icon() override;

    /// The image as ARGB32 with every fully transparent pixel 0, so that equal sprites have equal bytes
    /// whatever colours their transparent pixels held. A null image stays null. Any thread.
    static QImage normalized(QImage image);

private:
    GCachedImage m_image;
    QImage m_iconImage;
};
