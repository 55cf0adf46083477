#pragma once

#include "PackedTexture.h"
#include "Settings.h"

#include <functional>

/// Renders and stores a sheet under the settings' texture file name: makes the folder, writes, looks whether
/// the file is there. `activity` gets level and text for the user. On an Error the file of that name is
/// removed, and the Error passes.
void writeTexture(const Settings& settings, const PackedTexture& texture,
                  const std::function<void(int, const QString&)>& activity);
