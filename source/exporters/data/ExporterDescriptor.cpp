#include "ExporterDescriptor.h"

#include "Error.h"
#include "PackedSprite.h"
#include "XmlDocument.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr int maxBytes = 1 << 20;

/// With so few brackets no document nests deep enough to harm a parser that builds a tree.
constexpr int maxBracketsOfTree = 2000;

[[noreturn]] void failReading(const QString& file, int line, int column, const QString& message) {
    throw Error(Error::Descriptor, QStringLiteral("Can't read %1: (%2,%3) %4 ")
                                       .arg(file, QString::number(line), QString::number(column), message));
}

QByteArray contentOf(const QString& fileName) {
    QFile file(fileName);
    // Only a plain file: opening a pipe would wait for its other end.
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        throw Error(Error::Descriptor, QStringLiteral("Can't read %1").arg(fileName));
    const QByteArray bytes = file.read(maxBytes + 1);
    if (file.error() != QFileDevice::NoError)
        throw Error(Error::Descriptor, QStringLiteral("Can't read %1").arg(fileName));
    if (bytes.size() > maxBytes)
        failReading(fileName, 0, 0, QStringLiteral("The file is larger than %1 bytes").arg(maxBytes));
    return bytes;
}

QDomDocument documentOf(const QString& fileName) {
    QByteArray bytes = contentOf(fileName);
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    try {
        return parseXml(buffer);
    } catch (const Error& error) {
        // Asked once more for the place of the fault.
        int line = 0;
        int column = 0;
        QString message;
        if (bytes.count('<') <= maxBracketsOfTree &&
            !QDomDocument().setContent(bytes, &message, &line, &column))
            failReading(fileName, line, column, message);
        failReading(fileName, 0, 0, error.message());
    }
}

/// Reads the values of a descriptor and says where a wrong one stands.
class Reader {
public:
    explicit Reader(const QString& fileName) : m_fileName(fileName) {}

    QDomElement required(const QDomElement& parent, const QString& name) const {
        const QDomElement element = parent.firstChildElement(name);
        if (element.isNull())
            fail(parent,
                 QStringLiteral("Missing value for %1 as subelement of %2").arg(name, parent.tagName()));
        return element;
    }

    QString text(const QDomElement& parent, const QString& name) const {
        return required(parent, name).text().trimmed();
    }

    bool boolean(const QDomElement& parent, const QString& name) const {
        const QString value = text(parent, name);
        const QString folded = value.toLower();
        if (folded == QLatin1String("yes") || folded == QLatin1String("true") || folded == QLatin1String("1"))
            return true;
        // An empty element stands for what is so by default.
        if (folded.isEmpty() || folded == QLatin1String("no") || folded == QLatin1String("false") ||
            folded == QLatin1String("0"))
            return false;
        fail(parent, QStringLiteral("Illegal value for %1: %2, expected bool (yes,no,true,false,0,1)")
                         .arg(name, value));
    }

    int direction(const QDomElement& parent, const QString& name) const {
        const QString value = text(parent, name);
        if (value == QLatin1String("cw"))
            return PackedSprite::Clockwise;
        if (value == QLatin1String("ccw"))
            return PackedSprite::CounterClockwise;
        fail(parent, QStringLiteral("Illegal value %1 for <%2>. Possible values are: %3")
                         .arg(value, name, QStringLiteral("cw,ccw")));
    }

    ExporterDescriptor::FileEntry file(const QDomElement& files) const {
        const QDomElement element = required(files, QStringLiteral("file"));
        ExporterDescriptor::FileEntry entry;
        entry.fileExtension = text(element, QStringLiteral("fileExtension"));
        entry.templateName = text(element, QStringLiteral("template"));
        entry.name = text(element, QStringLiteral("name"));
        entry.displayName = text(element, QStringLiteral("displayName"));
        return entry;
    }

private:
    [[noreturn]] void fail(const QDomElement& parent, const QString& message) const {
        throw Error(
            Error::DescriptorContent,
            QStringLiteral("%1:%2: %3").arg(m_fileName, QString::number(parent.lineNumber()), message));
    }

    QString m_fileName;
};

void readFiles(const Reader& reader, const QDomElement& root, ExporterDescriptor& descriptor) {
    const QString name = QStringLiteral("files");
    for (QDomElement files = reader.required(root, name); !files.isNull();
         files = files.nextSiblingElement(name)) {
        const ExporterDescriptor::FileEntry entry = reader.file(files);
        descriptor.files.append(entry);
        descriptor.info.fileExtension = entry.fileExtension;
        descriptor.info.defaultFileName = QStringLiteral("out.%1").arg(entry.fileExtension);
        descriptor.info.fileFilter = QStringLiteral("%1 (*.%2)").arg(entry.displayName, entry.fileExtension);
    }
}

} // namespace

ExporterDescriptor readExporterDescriptor(const QString& directory) {
    const QString fileName = directory + QStringLiteral("/exporter.xml");
    const QDomDocument document = documentOf(fileName);
    const QDomElement root = document.firstChildElement(QStringLiteral("exporter"));
    const QString formVersion = root.attribute(QStringLiteral("version"));
    if (formVersion != QLatin1String("1.0"))
        throw Error(Error::Flash, QStringLiteral("Can't read exporter %1 with version \"%2\". "
                                                 "Supported versions are: \"1.0\"")
                                      .arg(fileName, formVersion));

    const Reader reader(fileName);
    ExporterDescriptor descriptor;
    DataExporterInfo& info = descriptor.info;
    info.id = reader.text(root, QStringLiteral("name"));
    const QString aliasName = QStringLiteral("nameAlias");
    for (QDomElement alias = root.firstChildElement(aliasName); !alias.isNull();
         alias = alias.nextSiblingElement(aliasName))
        info.aliases.append(alias.text().trimmed());
    info.displayName = reader.text(root, QStringLiteral("displayName"));
    info.description = reader.text(root, QStringLiteral("description"));
    descriptor.version = reader.text(root, QStringLiteral("version"));
    readFiles(reader, root, descriptor);
    info.supportsRotation = reader.boolean(root, QStringLiteral("supportsRotation"));
    info.rotationDirection = reader.direction(root, QStringLiteral("rotationDirection"));
    info.supportsTrimming = reader.boolean(root, QStringLiteral("supportsTrimming"));
    info.supportsNPOT = reader.boolean(root, QStringLiteral("supportsNPOT"));
    return descriptor;
}
