#pragma once

#include "DataFile.h"

#include <QXmlStreamWriter>

/// A data file in XML: UTF-8, elements indented by four blanks.
class XmlDataFile {
public:
    /// Opens the file; nothing is written yet. Throws Error (DataFile).
    explicit XmlDataFile(const QString& fileName);

    QXmlStreamWriter& xml() { return m_xml; }

    /// The two comments that tell where the file comes from and carry the token, which may be empty.
    /// `addressEnd` stands between the address in the first one and its end.
    void writeOrigin(const QString& token, const QString& addressEnd = QString());

    /// Two attributes of the open element.
    void writePoint(const QString& xName, const QString& yName, QPoint point);
    void writeSize(const QString& widthName, const QString& heightName, QSize size);

    /// Closes all elements and the document. Throws Error (DataFile) if it can't wholly be written, or if a
    /// text holds what XML can't.
    void writeEnd();

    /// Gives the ended document its name. Throws like writeEnd().
    void commit() { m_file.commit(); }

private:
    DataFile m_file;
    QXmlStreamWriter m_xml;
};
