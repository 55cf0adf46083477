#include "LoadFlashVisitor.h"

#include "SpriteReferenceNodeFlash.h"

#include <QMutexLocker>
#include <QPointer>

namespace {

// The server is destroyed by its own room.
QPointer<QObject>& server() {
    static QPointer<QObject> registered;
    return registered;
}

[[maybe_unused]] const int metaTypes[] = {
    qRegisterMetaType<SpriteFlashNode*>("SpriteFlashNode*"),
    qRegisterMetaType<SpriteTreeNode::ErrorClass>("SpriteTreeNode::ErrorClass"),
};

std::unique_ptr<SpriteTreeNode> newFrame(const SpriteFlashNode& movie, int index) {
    const QString number = QStringLiteral("%1").arg(index, 4, 10, QLatin1Char('0'));
    // A frame changes when its movie does, so it shares the record.
    return std::make_unique<SpriteReferenceNodeFlash>(movie.spriteName() + QLatin1Char('/') + number, number,
                                                      movie.fileData(), index);
}

} // namespace

void LoadFlashVisitor::setServer(QObject* newServer) { server() = newServer; }

LoadFlashVisitor::LoadFlashVisitor(QMutex& mutex, SpriteBranchNode::Removed& removed, QObject* parent)
    : QObject(parent), m_mutex(mutex), m_removed(removed) {
    if (server())
        connect(this, SIGNAL(newFlashLoader(QString, SpriteFlashNode*, QObject*)), server(),
                SLOT(newFlashLoader(QString, SpriteFlashNode*, QObject*)));
}

bool LoadFlashVisitor::start(SpriteTreeNode& root) {
    // A movie that fails at once may be done before the next one is asked for: that isn't the end.
    m_starting = true;
    root.accept(*this);
    m_starting = false;
    return !m_pending.isEmpty();
}

void LoadFlashVisitor::visitFlash(SpriteFlashNode& node) {
    if (!node.fileData().checkChanged())
        return;
    m_pending.insert(&node);
    if (server()) {
        emit newFlashLoader(node.fileName(), &node, this);
        return;
    }
    setError(&node, -1, SpriteTreeNode::ErrorClass::LoadFailure,
             QStringLiteral("Failed to load image: %1").arg(node.fileName()));
    done(&node);
}

void LoadFlashVisitor::reserve(SpriteFlashNode* node, int count) {
    QMutexLocker locker(&m_mutex);
    if (!m_pending.contains(node))
        return;
    node->truncate(qMax(count, 0), m_removed);
    for (int index = node->children().size(); index < count; ++index)
        node->append(newFrame(*node, index));
}

void LoadFlashVisitor::setImage(SpriteFlashNode* node, int index, const QImage& image) {
    QMutexLocker locker(&m_mutex);
    if (!m_pending.contains(node) || index < 0 || index >= node->children().size())
        return;
    static_cast<SpriteImageNode*>(node->children().at(index))->setImage(image);
    node->clearError(SpriteTreeNode::ErrorClass::LoadFailure);
}

void LoadFlashVisitor::setError(SpriteFlashNode* node, int, SpriteTreeNode::ErrorClass errClass,
                                const QString& error) {
    QMutexLocker locker(&m_mutex);
    if (!m_pending.contains(node))
        return;
    node->setError(errClass, error);
    node->truncate(0, m_removed);
}

void LoadFlashVisitor::done(SpriteFlashNode* node) {
    m_pending.remove(node);
    if (m_starting || !m_pending.isEmpty())
        return;
    emit allFlashLoaded();
    deleteLater();
}
