#pragma once

#include <QString>

#include <memory>

class AutoSDSettings;
class Settings;

/// A variant from "<scale>:<extension>[:allowfraction][:<width>[:<height>]]". Throws Error 36 with what is
/// wrong.
std::unique_ptr<AutoSDSettings> parseAutoSDVariant(const QString& expression);

/// Adds the half size variant of a sheet whose name ends in -hd, -ipadhd, @2x or 2x. Throws Error 11 for
/// another name.
void addHalfSizeVariant(Settings& settings);
