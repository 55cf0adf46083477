#pragma once

#include <QString>

class Settings;

/// The folder of the file list that a scan would find the texture file in; empty if no scan takes it up, by
/// its place, its suffix or the patterns of files that are left out.
QString sourceFolderOf(const QString& textureFile, const Settings& settings);
