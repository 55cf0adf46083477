#include "SpriteFileTreeModel.h"

#include "LoadFlashVisitor.h"
#include "LoadSpriteVisitor.h"
#include "MarkDuplicatedVisitor.h"
#include "PruneUnseenSeenVisitor.h"
#include "ResetSeenVisitor.h"
#include "Settings.h"
#include "SourceScan.h"
#include "SpriteCollectVisitor.h"
#include "SpriteHashVisitor.h"

#include <QMetaMethod>
#include <QMutexLocker>
#include <QTimer>

SpriteFileTreeModel::SpriteFileTreeModel(QObject* parent)
    : QObject(parent), m_root(std::make_unique<SpriteBranchNode>()) {}

SpriteFileTreeModel::~SpriteFileTreeModel() = default;

void SpriteFileTreeModel::update(Settings* settings) {
    QMutexLocker locker(&m_mutex);
    m_settings = settings;
    m_removed.clear();
    ResetSeenVisitor reset;
    m_root->accept(reset);
    m_root->setSeen(true);

    // A text for each of thousands of files is only made for somebody who wants it.
    SourceScan::Activity report;
    if (isSignalConnected(QMetaMethod::fromSignal(&SpriteFileTreeModel::activity)))
        report = [this](int level, const QString& message) { emit activity(level, message); };
    SourceScan scan(*settings, report);
    for (const GFileName& entry : settings->fileList())
        if (SpriteTreeNode* node = scan.addEntry(entry.path(), *m_root))
            node->setTopLevel(true);

    PruneUnseenSeenVisitor prune(m_removed);
    m_root->accept(prune);
    MarkDuplicatedVisitor mark;
    m_root->accept(mark);
}

void SpriteFileTreeModel::loadSprites() {
    emit activity(2, QStringLiteral("Loading images..."));
    {
        // Not needed between the steps of a job, but a walker in another thread must not meet half a node.
        QMutexLocker locker(&m_mutex);
        LoadSpriteVisitor sprites;
        m_root->accept(sprites);
        sprites.load();
    }
    auto* flash = new LoadFlashVisitor(m_mutex, m_removed, this);
    connect(flash, &LoadFlashVisitor::allFlashLoaded, this, &SpriteFileTreeModel::allFlashLoaded);
    connect(flash, &LoadFlashVisitor::activity, this, &SpriteFileTreeModel::activity);
    if (flash->start(*m_root))
        return;
    delete flash;
    QTimer::singleShot(0, this, &SpriteFileTreeModel::loadingDone);
}

QList<SpriteImageNode*> SpriteFileTreeModel::sprites() const {
    SpriteCollectVisitor collect;
    m_root->accept(collect);
    return collect.sprites();
}

QByteArray SpriteFileTreeModel::hashText() const {
    SpriteHashVisitor hash;
    m_root->accept(hash);
    return hash.storedText();
}

QByteArray SpriteFileTreeModel::currentHashText() const {
    SpriteHashVisitor hash;
    m_root->accept(hash);
    return hash.currentText();
}

void SpriteFileTreeModel::allFlashLoaded() { emit loadingDone(); }
