#pragma once

#include "SpriteBranchNode.h"
#include "SpriteFlashNode.h"
#include "SpriteTreeVisitor.h"

#include <QImage>
#include <QMutex>
#include <QObject>
#include <QSet>

/// Asks the Flash server for the frames of every movie that changed, and takes them. Made on the heap: once a
/// movie is pending, it lives until the last one is done. Everything here runs in the thread of the tree.
class LoadFlashVisitor : public QObject, public SpriteTreeVisitor {
    Q_OBJECT

public:
    /// The server of the process, with a slot newFlashLoader(QString, SpriteFlashNode*, QObject*) like the
    /// signal below. Registered once, at start, by the room that plays movies; without one every movie is a
    /// failure.
    static void setServer(QObject* server);

    /// `mutex` guards the tree, `removed` takes the frames that leave it. The parent has to keep both.
    LoadFlashVisitor(QMutex& mutex, SpriteBranchNode::Removed& removed, QObject* parent);

    /// Walks the tree and asks for the changed movies. False if none is pending: the caller deletes the
    /// visitor then.
    bool start(SpriteTreeNode& root);

    void visitFlash(SpriteFlashNode& node) override;

public slots:
    /// The movie has `count` frames from now on.
    void reserve(SpriteFlashNode* node, int count);

    void setImage(SpriteFlashNode* node, int index, const QImage& image);

    /// The movie can't be loaded: it shows the error and has no frames.
    void setError(SpriteFlashNode* node, int index, SpriteTreeNode::ErrorClass errClass,
                  const QString& error);

    /// The movie's last report, after success or error.
    void done(SpriteFlashNode* node);

signals:
    /// `node` is a token only.
    void newFlashLoader(const QString& fileName, SpriteFlashNode* node, QObject* receiver);

    void activity(int level, const QString& message);
    void allFlashLoaded();

private:
    QMutex& m_mutex;
    SpriteBranchNode::Removed& m_removed;
    QSet<SpriteFlashNode*> m_pending;
    bool m_starting = false;
};
