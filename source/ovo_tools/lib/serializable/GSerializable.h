#pragma once

#include <QObject>

class GSerializableNode;
class GSerializableWriter;

/// Base of all settings: an object with a changed state that writes itself as tagged XML and is rebuilt from
/// it. Confined to the thread that owns it.
class GSerializable : public QObject {
    Q_OBJECT

public:
    explicit GSerializable(QObject* parent = nullptr);

    /// Changed since the last load or save.
    bool isDirty() const { return m_dirty; }

    /// True: marks this object and all its owners, then emits propertyChanged() on each. False: clears the
    /// mark of this object and of everything below it, without a signal.
    virtual void setDirty(bool dirty);

    /// Writes the object as one `struct` element.
    virtual void write(GSerializableWriter& writer) const = 0;

    /// Fills the object from the keys and values that begin at `node`, the first child of its `struct`. Keys
    /// may come in any order, unknown ones are skipped, missing ones keep what the object holds. No signal.
    /// Throws Error 39 or 55.
    virtual void read(const GSerializableNode& node) = 0;

    /// Sets every property to its default, through the setters.
    virtual void setDefaults() = 0;

    /// A deep copy without parent, owned by the caller.
    virtual GSerializable* clone() const = 0;

signals:
    void propertyChanged();

private:
    bool m_dirty = false;
};
