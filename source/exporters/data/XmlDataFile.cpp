#include "XmlDataFile.h"

#include "product.h"

#include <QPoint>
#include <QSize>

XmlDataFile::XmlDataFile(const QString& fileName)
    : m_file(fileName, QStringLiteral("Failed to write xml file %1")), m_xml(&m_file.device()) {
    m_xml.setCodec("UTF-8");
    m_xml.setAutoFormatting(true);
}

void XmlDataFile::writeOrigin(const QString& token, const QString& addressEnd) {
    m_xml.writeComment(QStringLiteral(" Created with ") + QLatin1String(product::name) + QLatin1Char(' ') +
                       QLatin1String(product::homePage) + addressEnd);
    m_xml.writeComment(QLatin1Char(' ') + token + QLatin1Char(' '));
}

void XmlDataFile::writePoint(const QString& xName, const QString& yName, QPoint point) {
    m_xml.writeAttribute(xName, QString::number(point.x()));
    m_xml.writeAttribute(yName, QString::number(point.y()));
}

void XmlDataFile::writeSize(const QString& widthName, const QString& heightName, QSize size) {
    m_xml.writeAttribute(widthName, QString::number(size.width()));
    m_xml.writeAttribute(heightName, QString::number(size.height()));
}

void XmlDataFile::writeEnd() {
    m_xml.writeEndDocument();
    if (m_xml.hasError())
        m_file.fail();
    m_file.flush();
}
