#pragma once

#include "SpriteTreeVisitor.h"

#include <QList>
#include <QStringList>

/// Loads the files that changed: reads on all cores, takes the images in tree order, so that the result and
/// the image cache's order are those of one file after the other.
class LoadSpriteVisitor : public SpriteTreeVisitor {
public:
    void visitFile(SpriteFileNode& node) override;

    /// To be called after the walk. Throws Error 54 if the image cache can't make room; what wasn't taken
    /// then is read by the next load.
    void load();

private:
    /// Paths for one call: of a file, or of up to `most` small ones.
    QStringList runFrom(int first, int most) const;

    QList<SpriteFileNode*> m_toRead;
};
