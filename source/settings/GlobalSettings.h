#pragma once

#include <QSettings>
#include <QString>

/// The program's own preferences in the user's store. Made on the stack for each access; what was never
/// written reads as its default, and setters write through at once. Keys without an accessor are read and
/// written at the place of use.
class GlobalSettings : public QSettings {
public:
    GlobalSettings() = default;

    /// XML of the user's defaults for a new project; empty if there are none.
    QByteArray defaultSettings() const { return value(QStringLiteral("defaultSettings")).toByteArray(); }
    void setDefaultSettings(const QByteArray& xml) { setValue(QStringLiteral("defaultSettings"), xml); }

    /// Id of the data format of the last job.
    QString lastExporter() const { return value(QStringLiteral("lastExporter")).toString(); }
    void setLastExporter(const QString& id) { setValue(QStringLiteral("lastExporter"), id); }

    /// Extra folder with exporter templates; empty if there is none.
    QString customExporterPath() const { return value(QStringLiteral("customExporterPath")).toString(); }
    void setCustomExporterPath(const QString& path) { setValue(QStringLiteral("customExporterPath"), path); }
};
