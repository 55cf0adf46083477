#include "ExporterFolders.h"

#include "DataExporterRegistry.h"
#include "Error.h"
#include "GlobalSettings.h"

#include <QCoreApplication>
#include <QDir>

QStringList scanExporterFolders(DataExporterRegistry& registry) {
    QStringList folders{QCoreApplication::applicationDirPath() + QStringLiteral("/exporters")};
    const QString customFolder = GlobalSettings().customExporterPath();
    if (!customFolder.isEmpty())
        folders.append(customFolder);
    QStringList faults;
    for (const QString& folder : qAsConst(folders)) {
        try {
            registry.scan(QDir(folder));
        } catch (const Error& error) {
            faults.append(error.message());
        }
    }
    return faults;
}
