#pragma once

#include <QSet>

#include <grantlee/templateloader.h>

/// Loads the templates of one folder, and refuses those that the library would go down with: a user's
/// template is outside data. Made for one rendering in one thread.
class TemplateLoader : public Grantlee::FileSystemTemplateLoader {
public:
    explicit TemplateLoader(const QString& directory);

    /// Throws Error (Exporter) for a template that is refused, also when another one includes it.
    Grantlee::Template loadByName(const QString& name, const Grantlee::Engine* engine) const override;

private:
    QString m_directory;
    const char* m_stackBase;
    mutable QSet<QString> m_checked;
};
