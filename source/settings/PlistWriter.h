#pragma once

#include <QString>
#include <QVariant>
#include <QXmlStreamWriter>

/// Writes a tree of values as an XML property list (Apple's PLIST 1.0). The kinds that can be written: bool,
/// int, uint, double, QString, QVariantMap, QVariantHash, QVariantList, QStringList, and as texts QRect,
/// QSize, QPoint, QPointF.
class PlistWriter {
public:
    explicit PlistWriter(const QString& fileName);

    /// Writes the file, UTF-8. Maps and hashes both go in ascending order of keys, so that equal values give
    /// equal bytes. False if the file can't wholly be written or a text holds what XML can't; a former file
    /// stays as it was then. A value of another kind is a fault of the program: it ends with status 10.
    bool write(const QVariant& root);

private:
    void writeValue(const QVariant& value);
    void writeText(const QString& element, const QString& text);
    void writeArray(const QVariantList& values);
    template <class Dictionary>
    void writeDictionary(const Dictionary& values);

    QString m_fileName;
    QXmlStreamWriter m_xml;
};
