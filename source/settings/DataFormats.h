#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// What the settings have to know of a data format: the exporters stand in a higher room and register
/// themselves here.
struct DataFormat {
    QString id;
    bool supportsRotation = true;
    bool supportsTrimming = true; ///< the field of the exporter, which limits the trim mode
    bool canTrim = true;          ///< what the exporter answers, the command line's default
    bool supportsNPOT = false;    ///< sizes that are no power of two
};

/// Asks for the data formats. Implemented by the registry of exporters, which lives to the end of the
/// process.
class DataFormats {
public:
    virtual ~DataFormats() = default;

    /// The format with that id or alias.
    virtual std::optional<DataFormat> findFormat(const QString& name) const = 0;

    /// The ids of all formats, in registry order.
    virtual QStringList formatIds() const = 0;

    /// Not owned. Called once, at start, on the main thread.
    static void setInstance(const DataFormats* formats);

    /// Null before the registry registered itself.
    static const DataFormats* instance();
};
