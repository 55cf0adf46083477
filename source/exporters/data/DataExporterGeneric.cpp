#include "DataExporterGeneric.h"

#include "TemplateProperties.h"
#include "TemplateRenderer.h"

#include <QDateTime>
#include <QDir>
#include <QSet>

namespace {

/// Appends a line for each file in the folder and below it. `seen` are the folders that were read: links that
/// lead from one to another would have no end, or a very late one.
void appendFingerprint(QString& text, const QDir& folder, QSet<QString>& seen) {
    const QString place = folder.canonicalPath();
    if (seen.contains(place))
        return;
    seen.insert(place);
    for (const QFileInfo& file : folder.entryInfoList(QDir::Files))
        text += QStringLiteral("%1|%2|%3")
                    .arg(file.absoluteFilePath(), QString::number(file.size()),
                         file.lastModified().toString(QStringLiteral("dd.MM.yyyy hh:mm:ss.zzz")));
    for (const QFileInfo& subFolder : folder.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot))
        appendFingerprint(text, QDir(subFolder.absoluteFilePath()), seen);
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

QString DataExporterGeneric::versionString() const {
    QString text;
    QSet<QString> seen;
    appendFingerprint(text, QDir(m_directory), seen);
    return text;
}
