#pragma once

#include "SpriteImageNode.h"

/// A file that is one sprite.
class SpriteFileNode : public SpriteImageNode {
public:
    using SpriteImageNode::SpriteImageNode;

    void accept(SpriteTreeVisitor& visitor) override;

    /// Reads the file if it changed since the last load. One that can't be read leaves an error and a null
    /// image. Throws Error 54 if the image cache can't make room; the next load tries again then.
    virtual void load();

    // The same in three steps, so that many files can be read at once.

    /// First step: whether the file has to be read. Looks at it before it is read, so that a file that
    /// changes meanwhile is read again by the next load.
    bool needsReading();

    /// Second step, any thread: the normalized image of a file, null on failure.
    static QImage read(const QString& path);

    /// Third step: takes what was read, or the failure.
    void take(const QImage& image);

private:
    bool m_unread = true; ///< seen to have changed, and not taken yet
};
