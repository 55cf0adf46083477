#pragma once

#include <QString>

class Settings;

/// A sentence for the user if the texture file is a source of its own sheet: given by name, or where a scan
/// of a folder takes it up. Empty if it isn't, by its place, its suffix or the patterns of files that are
/// left out.
QString outputAmongSources(const Settings& settings);
