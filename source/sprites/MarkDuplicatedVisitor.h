#pragma once

#include "SpriteTreeVisitor.h"

#include <QHash>
#include <QString>

/// Marks sprites that share a name with another one, and unmarks those that don't any more.
class MarkDuplicatedVisitor : public SpriteTreeVisitor {
public:
    void visitImage(SpriteImageNode& node) override;

private:
    QHash<QString, SpriteImageNode*> m_byName;
};
