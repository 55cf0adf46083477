#include "GSerializable.h"

GSerializable::GSerializable(QObject* parent) : QObject(parent) {}

void GSerializable::setDirty(bool dirty) {
    m_dirty = dirty;
    if (dirty) {
        if (auto* owner = qobject_cast<GSerializable*>(parent()))
            owner->setDirty(true);
        emit propertyChanged();
        return;
    }
    for (QObject* child : children()) {
        if (auto* owned = qobject_cast<GSerializable*>(child))
            owned->setDirty(false);
    }
}
