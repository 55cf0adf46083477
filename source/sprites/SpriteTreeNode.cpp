#include "SpriteTreeNode.h"

SpriteTreeNode::SpriteTreeNode(const QString& spriteName, const QString& displayName,
                               const FileData& fileData)
    : m_spriteName(spriteName), m_fileData(fileData), m_displayName(displayName) {}

SpriteTreeNode::~SpriteTreeNode() = default;

void SpriteTreeNode::setError(ErrorClass errorClass, const QString& text) {
    if (errorClass <= m_errorClass)
        return;
    m_errorClass = errorClass;
    m_errorText = text;
}

void SpriteTreeNode::clearError(ErrorClass errorClass) {
    if (errorClass != m_errorClass)
        return;
    m_errorClass = ErrorClass::None;
    m_errorText.clear();
}
