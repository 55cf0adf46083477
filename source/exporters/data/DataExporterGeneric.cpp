#include "DataExporterGeneric.h"

#include "TemplateProperties.h"
#include "TemplateRenderer.h"

#include <QDateTime>
#include <QDir>

namespace {

/// `above` are the folders that lead here: a link back to one of them would never end.
QString fingerprint(const QDir& folder, QStringList above) {
    const QString place = folder.canonicalPath();
    if (above.contains(place))
        return {};
    above.append(place);
    QString text;
    for (const QFileInfo& file : folder.entryInfoList(QDir::Files))
        text += QStringLiteral("%1|%2|%3")
                    .arg(file.absoluteFilePath(), QString::number(file.size()),
                         file.lastModified().toString(QStringLiteral("dd.MM.yyyy hh:mm:ss.zzz")));
    for (const QFileInfo& subFolder : folder.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot))
        text += fingerprint(QDir(subFolder.absoluteFilePath()), above);
    return text;
}

} // namespace

DataExporterGeneric::DataExporterGeneric(const QString& directory)
    : DataExporterGeneric(readExporterDescriptor(directory), directory) {}

DataExporterGeneric::DataExporterGeneric(const ExporterDescriptor& descriptor, const QString& directory)
    : DataExporter(descriptor.info), m_version(descriptor.version), m_directory(directory),
      m_files(descriptor.files) {
    registerTemplateProperties();
}

void DataExporterGeneric::write() const {
    for (int i = 0; i < m_files.size(); ++i) {
        // All go to one name, so that only the last has to appear under it.
        const bool isLast = i == m_files.size() - 1;
        TemplateRenderer(*this, m_directory).render(m_files[i].templateName, isLast);
    }
}

QString DataExporterGeneric::versionString() const { return fingerprint(QDir(m_directory), {}); }
