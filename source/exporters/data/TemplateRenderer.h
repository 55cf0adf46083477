#pragma once

#include <QString>

class DataExporter;

/// Renders templates of one folder with the values of an exporter's job. Makes the template library's engine,
/// and lives for one file.
class TemplateRenderer {
public:
    /// `exporter` has the input of the job, and stays until render() is done.
    TemplateRenderer(const DataExporter& exporter, const QString& directory)
        : m_exporter(exporter), m_directory(directory) {}

    /// Renders one template into the exporter's file, which appears under its name when it is complete, and
    /// only if `keep` is set. Throws Error (Exporter).
    void render(const QString& templateName, bool keep) const;

private:
    const DataExporter& m_exporter;
    QString m_directory;
};
