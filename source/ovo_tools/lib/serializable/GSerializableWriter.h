#pragma once

#include "GFileName.h"

#include <QDir>
#include <QSize>
#include <QXmlStreamWriter>

class GSerializable;
class QIODevice;

/// Writes serializable objects as tagged XML. With beginDocument() the result is a whole, indented document;
/// without it a bare `struct` element.
class GSerializableWriter : public QXmlStreamWriter {
public:
    /// Names of files are written relative to `base`. The device isn't owned and stays open.
    GSerializableWriter(QIODevice* device, const QDir& base);

    /// Closes a document that was begun, also when an exception passes.
    ~GSerializableWriter();

    void beginDocument();
    void endDocument();

    void beginStruct(const char* type);
    void writeKey(const char* name);
    void writeEnum(const QString& qualifiedName, const QString& stored);
    void beginArray();
    void writeString(const QString& text);
    void writeFileName(const GFileName& fileName);
    void writeDouble(double value); ///< six significant digits
    void writeInt(int value);
    void writeUInt(uint value);
    void writeBool(bool value);
    void writeSize(const QSize& size);
    void writeObject(const GSerializable& object);

    /// Closes a struct or an array.
    void endElement();

private:
    QDir m_base;
    bool m_documentStarted = false;
};
