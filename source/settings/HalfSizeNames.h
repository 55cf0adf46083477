#pragma once

#include <QString>

#include <optional>

/// What a variant of half the size replaces in the file names of the main sheet, and by what.
struct HalfSizeNames {
    QString mainExtension;
    QString extension;
};

/// The names that a sheet's own name asks for: one that ends in -hd, -ipadhd, @2x or 2x in front of its
/// suffix. None for any other name.
std::optional<HalfSizeNames> halfSizeNames(const QString& textureFileName);
