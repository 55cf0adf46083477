#pragma once

#include <QStringList>

class DataExporterRegistry;

/// Adds the template formats of the folder exporters beside the program, then those of the user's own folder,
/// if the preferences name one. Gives the reason of each of the two scans that stopped, for a dialog or a
/// warning titled "Failed to scan exporters"; what a scan found before it stopped stays. To be called at
/// start, on the main thread.
QStringList scanExporterFolders(DataExporterRegistry& registry);
