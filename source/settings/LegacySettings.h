#pragma once

#include "Settings.h"

#include <memory>
#include <optional>

class LegacyValues;

/// New settings, unchanged since loading, from the values of a first-generation project whose paths are
/// absolute. Throws Error 16 to 19 and 55 for words that name nothing.
std::unique_ptr<Settings> settingsOfLegacyValues(const LegacyValues& values);

/// The texture format that a name of the first generation stands for, by its suffix; none for a suffix that
/// generation didn't write.
std::optional<SettingsBase::TextureFormat> legacyTextureFormat(const QString& textureFileName);
