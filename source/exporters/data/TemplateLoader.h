#pragma once

#include <QDeadlineTimer>
#include <QSet>

#include <grantlee/templateloader.h>

/// Loads the templates of one folder, and refuses those that the library would go down with: a user's
/// template is outside data. Made for one rendering in one thread.
class TemplateLoader : public Grantlee::FileSystemTemplateLoader {
public:
    /// Templates that include each other millions of times are stopped at the deadline.
    TemplateLoader(const QString& directory, QDeadlineTimer deadline);

    /// Only for plain files in the folder.
    bool canLoadTemplate(const QString& name) const override;

    /// Throws Error (Exporter) for a template that is refused, also when another one includes it, and for any
    /// after the deadline.
    Grantlee::Template loadByName(const QString& name, const Grantlee::Engine* engine) const override;

private:
    void check(const QString& name) const;

    QString m_directory;
    QDeadlineTimer m_deadline;
    const char* m_stackBase;
    mutable QSet<QString> m_checked;
};
