#pragma once

#include "DataExporter.h"
#include "DataFormats.h"

#include <QDir>

#include <memory>
#include <vector>

/// All data formats: the built-in ones in their fixed order, then what is added. Filled at start on the main
/// thread, read from job threads afterwards without a lock.
class DataExporterRegistry : public DataFormats {
public:
    /// Holds the built-in formats.
    DataExporterRegistry();

    /// The one that the program uses: made on first use, never destroyed.
    static DataExporterRegistry& instance();

    /// In registry order; owned by the registry.
    const QList<DataExporter*>& exporters() const { return m_exporters; }

    /// By display name, whose case doesn't count.
    QList<DataExporter*> sortedExporters() const;

    QStringList ids() const;

    /// The first format of that id, whose case counts, or with such an alias, whose case doesn't. Null if
    /// there is none.
    DataExporter* find(const QString& name) const;

    void add(std::unique_ptr<DataExporter> exporter);

    /// Adds a template format for each folder in `dir`. Throws Error at the first fault of a descriptor; what
    /// was added before stays.
    void scan(const QDir& dir);

    std::optional<DataFormat> findFormat(const QString& name) const override;
    QStringList formatIds() const override { return ids(); }

private:
    std::vector<std::unique_ptr<DataExporter>> m_owned;
    QList<DataExporter*> m_exporters;
};
