#pragma once

#include <grantlee/taglibraryinterface.h>

#include <QObject>

/// The program's own filters, which a template gets with {% load sorvane %}. The template library takes
/// filters from files alone: this is a plug-in, which lies beside the program.
class TemplateFilters : public QObject, public Grantlee::TagLibraryInterface {
    Q_OBJECT
    Q_INTERFACES(Grantlee::TagLibraryInterface)
    Q_PLUGIN_METADATA(IID "org.grantlee.TagLibraryInterface")

public:
    /// The caller owns them.
    QHash<QString, Grantlee::Filter*> filters(const QString& name = {}) override;
};
