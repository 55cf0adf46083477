#include "PlistWriter.h"

#include "OutputFile.h"

#include <QBuffer>
#include <QDebug>
#include <QPointF>
#include <QRect>

#include <algorithm>
#include <cstdlib>

namespace {

QString pair(const QString& first, const QString& second) {
    return QStringLiteral("{%1,%2}").arg(first, second);
}

QString pair(int first, int second) { return pair(QString::number(first), QString::number(second)); }

// Geometry has no kind of its own in a property list.
QString geometryText(const QVariant& value) {
    switch (value.userType()) {
    case QMetaType::QRect: {
        const QRect rect = value.toRect();
        return pair(pair(rect.x(), rect.y()), pair(rect.width(), rect.height()));
    }
    case QMetaType::QSize:
        return pair(value.toSize().width(), value.toSize().height());
    case QMetaType::QPoint:
        return pair(value.toPoint().x(), value.toPoint().y());
    default:
        return pair(QString::number(value.toPointF().x(), 'g'), QString::number(value.toPointF().y(), 'g'));
    }
}

// Callers put only the kinds into a tree that a property list has: anything else can't come from outside.
[[noreturn]] void stopAtUnknownKind(const QVariant& value) {
    qWarning().noquote() << QStringLiteral("Unknown format for export : %1 (%2)")
                                .arg(QLatin1String(value.typeName()))
                                .arg(value.userType());
    std::exit(10);
}

} // namespace

PlistWriter::PlistWriter(const QString& fileName) : m_fileName(fileName) {}

bool PlistWriter::write(const QVariant& root) {
    // The whole document first: a value of an unknown kind ends the process, and no file is there yet to be
    // left behind.
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    m_xml.setDevice(&buffer);
    m_xml.setCodec("UTF-8");
    m_xml.setAutoFormatting(true);
    m_xml.writeStartDocument();
    m_xml.writeDTD(QStringLiteral("<!DOCTYPE plist PUBLIC \"-//Apple Computer//DTD PLIST 1.0//EN\" "
                                  "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">"));
    m_xml.writeStartElement(QStringLiteral("plist"));
    m_xml.writeAttribute(QStringLiteral("version"), QStringLiteral("1.0"));
    writeValue(root);
    m_xml.writeEndElement();
    m_xml.writeEndDocument();
    m_xml.setDevice(nullptr);
    if (m_xml.hasError())
        return false;
    OutputFile file(m_fileName);
    return file.open() && file.device().write(buffer.data()) == buffer.size() && file.device().flush() &&
           file.commit();
}

void PlistWriter::writeValue(const QVariant& value) {
    switch (value.userType()) {
    case QMetaType::Bool:
        m_xml.writeEmptyElement(value.toBool() ? QStringLiteral("true") : QStringLiteral("false"));
        break;
    case QMetaType::Int:
    case QMetaType::UInt:
        writeText(QStringLiteral("integer"), value.toString());
        break;
    case QMetaType::Double:
        writeText(QStringLiteral("real"), value.toString());
        break;
    case QMetaType::QString:
        writeText(QStringLiteral("string"), value.toString());
        break;
    case QMetaType::QRect:
    case QMetaType::QSize:
    case QMetaType::QPoint:
    case QMetaType::QPointF:
        writeText(QStringLiteral("string"), geometryText(value));
        break;
    case QMetaType::QVariantMap:
        writeDictionary(value.toMap());
        break;
    case QMetaType::QVariantHash:
        writeDictionary(value.toHash());
        break;
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        writeArray(value.toList());
        break;
    default:
        stopAtUnknownKind(value);
    }
}

void PlistWriter::writeText(const QString& element, const QString& text) {
    m_xml.writeTextElement(element, text);
}

void PlistWriter::writeArray(const QVariantList& values) {
    m_xml.writeStartElement(QStringLiteral("array"));
    for (const QVariant& value : values)
        writeValue(value);
    m_xml.writeEndElement();
}

template <class Dictionary>
void PlistWriter::writeDictionary(const Dictionary& values) {
    m_xml.writeStartElement(QStringLiteral("dict"));
    QStringList keys = values.keys();
    std::sort(keys.begin(), keys.end());
    for (const QString& key : qAsConst(keys)) {
        writeText(QStringLiteral("key"), key);
        writeValue(values.value(key));
    }
    m_xml.writeEndElement();
}
