#pragma once

#include "FileData.h"

#include <QImage>
#include <QMetaType>
#include <QString>

class SpriteTreeVisitor;

/// A node of the sprite source tree: what a file, a folder, a movie or a frame have in common. Owned by its
/// branch. Belongs to the worker thread; others read it under the lock of SpriteFileTreeModel.
class SpriteTreeNode {
public:
    /// What is wrong with a node; a higher class hides a lower one.
    enum class ErrorClass : int { None = 0, NameConflict = 1, LoadFailure = 2 };

    SpriteTreeNode(const QString& spriteName, const QString& displayName, const FileData& fileData);
    virtual ~SpriteTreeNode();

    /// Calls the visitor's operation for the node's own class.
    virtual void accept(SpriteTreeVisitor& visitor) = 0;

    virtual void setSeen(bool seen) { m_seen = seen; }

    /// Path of the file or folder.
    virtual QString fileName() const { return m_fileData.path(); }

    /// Picture for the sprite list; may be null.
    virtual QImage icon() { return QImage(); }

    /// The node stands for an entry of the file list itself.
    bool topLevel() const { return m_topLevel; }
    void setTopLevel(bool topLevel) { m_topLevel = topLevel; }

    /// Name in the data file, as it was when the node was made.
    const QString& spriteName() const { return m_spriteName; }

    /// Name within the parent: that of the file or folder, or a frame's number.
    const QString& displayName() const { return m_displayName; }

    FileData& fileData() { return m_fileData; }
    const FileData& fileData() const { return m_fileData; }

    const QString& errorText() const { return m_errorText; }
    ErrorClass errorClass() const { return m_errorClass; }

    /// Takes effect only if the class is higher than the current one; a lower error is forgotten.
    void setError(ErrorClass errorClass, const QString& text);

    /// Removes the error if it is of that class.
    void clearError(ErrorClass errorClass);

    /// Met in the current rescan; true outside of one.
    bool seen() const { return m_seen; }

    /// The last load replaced the image, and nobody has taken it yet.
    bool changed() const { return m_changed; }
    void setChanged(bool changed) { m_changed = changed; }

    SpriteTreeNode(const SpriteTreeNode&) = delete;
    SpriteTreeNode& operator=(const SpriteTreeNode&) = delete;

private:
    bool m_topLevel = false;
    const QString m_spriteName;
    FileData m_fileData;
    QString m_errorText;
    ErrorClass m_errorClass = ErrorClass::None;
    const QString m_displayName;
    bool m_seen = true;
    bool m_changed = true;
};

Q_DECLARE_METATYPE(SpriteTreeNode::ErrorClass)
