#pragma once

#include "DataExporter.h"
#include "ExporterDescriptor.h"

/// A format that the user adds: a folder with a descriptor, exporter.xml, and Grantlee templates.
class DataExporterGeneric : public DataExporter {
public:
    /// Reads the descriptor of the folder, whose path is absolute. Throws like readExporterDescriptor().
    explicit DataExporterGeneric(const QString& directory);

    /// Renders every file of the descriptor in turn into fileName(), where the last one stays. Throws Error
    /// (Exporter) if a template can't be loaded or rendered, or the file not be written.
    void write() const override;

    bool isTemplateBased() const override { return true; }

    /// A line for each file in the folder, with its size and its time of last change.
    QString versionString() const override;

    const QString& version() const { return m_version; }
    const QString& directory() const { return m_directory; }
    const QList<ExporterDescriptor::FileEntry>& files() const { return m_files; }

private:
    DataExporterGeneric(const ExporterDescriptor& descriptor, const QString& directory);

    QString m_version;
    QString m_directory;
    QList<ExporterDescriptor::FileEntry> m_files;
};
