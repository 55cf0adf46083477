#pragma once

#include "GFileName.h"

#include <QDir>
#include <QDomElement>
#include <QSize>

#include <memory>

class GEnumInfoBase;
class GSerializable;
class GSerializableReader;
class QIODevice;

/// An element of a document and the reader that it belongs to; valid while the reader lives.
class GSerializableNode {
public:
    GSerializableNode(const QDomElement& element, const GSerializableReader* reader)
        : m_element(element), m_reader(reader) {}

    QString name() const { return m_element.tagName(); }
    QString text() const { return m_element.text(); }
    QString attribute(const QString& name) const { return m_element.attribute(name); }
    int line() const { return m_element.lineNumber(); } ///< -1 for a null node
    bool isNull() const { return m_element.isNull(); }
    GSerializableNode firstChild() const { return {m_element.firstChildElement(), m_reader}; }
    GSerializableNode next() const { return {m_element.nextSiblingElement(), m_reader}; }
    const GSerializableReader& reader() const { return *m_reader; }

    /// The node as a key of a `struct`: its text. Throws Error 39 if it is no `key` element.
    QString structKey() const;

private:
    QDomElement m_element;
    const GSerializableReader* m_reader;
};

/// Reads the tagged XML of GSerializableWriter. Every value function checks the element's name and throws
/// Error 39 for another kind; numbers convert without a test, so that bad text reads as 0.
class GSerializableReader {
public:
    /// Parses the whole device. Names of files are relative to `base`. Throws Error 39 with the parser's
    /// text, or if the top element isn't `data`.
    GSerializableReader(QIODevice& device, const QDir& base);

    /// The top object, without parent.
    std::unique_ptr<QObject> readObject() const;

    void read(const GSerializableNode& node, QString& value) const;
    void read(const GSerializableNode& node, GFileName& value) const;
    void read(const GSerializableNode& node, double& value) const;
    void read(const GSerializableNode& node, int& value) const;
    void read(const GSerializableNode& node, uint& value) const;
    void read(const GSerializableNode& node, bool& value) const; ///< every element but `true` is false
    void read(const GSerializableNode& node, QSize& value) const;

    /// The number of an enum's stored name. Throws Error 55 for a name that the enum hasn't.
    int readEnum(const GSerializableNode& node, const GEnumInfoBase& info) const;

    /// The first element of an array; null for an empty one.
    GSerializableNode arrayBegin(const GSerializableNode& node) const;

    /// An object of the class that the element's type names, without parent, filled. Throws Error 39 for an
    /// unknown class.
    std::unique_ptr<QObject> readObject(const GSerializableNode& node) const;

    /// The same for an object that has to be a T; anything else is an unknown class.
    template <typename T>
    std::unique_ptr<T> readObjectOf(const GSerializableNode& node) const {
        std::unique_ptr<QObject> object = readObject(node);
        auto* typed = qobject_cast<T*>(object.get());
        if (!typed)
            throwCantCreate(node);
        object.release();
        return std::unique_ptr<T>(typed);
    }

    /// Fills a list from an array.
    template <typename T>
    void readList(const GSerializableNode& node, QList<T>& list) const {
        list.clear();
        for (GSerializableNode item = arrayBegin(node); !item.isNull(); item = item.next()) {
            T value;
            read(item, value);
            list.append(value);
        }
    }

private:
    [[noreturn]] static void throwCantCreate(const GSerializableNode& node);

    QDir m_base;
    QDomElement m_data;
};
