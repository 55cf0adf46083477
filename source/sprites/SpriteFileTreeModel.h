#pragma once

#include "SpriteBranchNode.h"
#include "SpriteImageNode.h"

#include <QList>
#include <QMutex>
#include <QObject>
#include <QString>

#include <memory>

class Settings;

/// The sprite sources of a project as a tree: a node a file, a folder, a frame. It survives between jobs, so
/// that a change of one file reloads that file only. Used by one worker thread, step by step: update(),
/// loadSprites(), and after loadingDone() the rest. Other threads may walk it between tryLock() and unlock().
class SpriteFileTreeModel : public QObject {
    Q_OBJECT

public:
    explicit SpriteFileTreeModel(QObject* parent = nullptr);
    ~SpriteFileTreeModel() override;

    /// Brings the tree up to date with the file system. Nodes that leave it stay alive until the next
    /// update() begins. Throws Error 36, see SourceScan; the tree is complete again after the next update()
    /// that works.
    void update(Settings* settings);

    /// Reads what changed. loadingDone() follows later, from the event loop. Throws Error 54 if the image
    /// cache can't make room; nothing follows then.
    void loadSprites();

    /// Files and frames in tree order, owned by the tree.
    QList<SpriteImageNode*> sprites() const;

    /// One line a sprite in tree order, each ended by a line feed, see FileData::hashText(): the files as the
    /// last load found them.
    QByteArray hashText() const;

    /// The same text for the files as they are on disk now. Before the load: what hashText() will be after
    /// it, if nothing changes meanwhile.
    QByteArray currentHashText() const;

    /// The nameless root.
    SpriteBranchNode* root() const { return m_root.get(); }

    /// For other threads that walk the tree; they skip their work if this fails.
    bool tryLock() { return m_mutex.tryLock(); }
    void unlock() { m_mutex.unlock(); }

public slots:
    void allFlashLoaded();

signals:
    void loadingDone();
    void activity(int level, const QString& message);

private:
    QMutex m_mutex;
    Settings* m_settings = nullptr;
    SpriteBranchNode::Removed m_removed;
    const std::unique_ptr<SpriteBranchNode> m_root;
};
