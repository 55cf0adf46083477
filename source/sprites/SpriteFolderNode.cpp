#include "SpriteFolderNode.h"

#include "SpriteTreeVisitor.h"

SpriteFolderNode::SpriteFolderNode(const QString& spriteName, const QString& displayName, const QString& path,
                                   bool nested)
    : SpriteBranchNode(spriteName, displayName, FileData(path)), m_path(path), m_nested(nested) {}

void SpriteFolderNode::accept(SpriteTreeVisitor& visitor) { visitor.visitFolder(*this); }

QImage SpriteFolderNode::icon() {
    static const QImage folder(QStringLiteral(":resources/Folder.png"));
    static const QImage smartFolder(QStringLiteral(":resources/SmartFolder.png"));
    return m_nested ? smartFolder : folder;
}
