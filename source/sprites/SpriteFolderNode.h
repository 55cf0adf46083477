#pragma once

#include "SpriteBranchNode.h"

/// A folder whose files are sprites.
class SpriteFolderNode : public SpriteBranchNode {
public:
    /// `nested` for a folder that was found inside another one.
    SpriteFolderNode(const QString& spriteName, const QString& displayName, const QString& path, bool nested);

    void accept(SpriteTreeVisitor& visitor) override;
    QString fileName() const override { return m_path; }
    QImage icon() override;

    bool nested() const { return m_nested; }

private:
    const QString m_path;
    const bool m_nested;
};
