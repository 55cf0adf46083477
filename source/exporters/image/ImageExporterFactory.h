#pragma once

#include "ImageExporter.h"

#include <memory>

/// The exporter of a texture format. Png goes through the optimiser at every level above 0.
std::unique_ptr<ImageExporter> makeImageExporter(SettingsBase::TextureFormat format,
                                                 uint pngOptimizationLevel);
