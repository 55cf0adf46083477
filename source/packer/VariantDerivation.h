#pragma once

#include "PackedResult.h"

class Settings;
class Sprite;

/// The main layout at another resolution: every position and size times `ratio`, the pixels made anew from
/// the sources. `sprites` are the sprites that were packed, `variant` gives scale, extrusion and paddings of
/// the derived sheet, and `rotationDirection` is that of its data format. `main` stays as it is. Throws
/// Error.
PackedResult deriveVariant(const PackedResult& main, const QList<Sprite>& sprites, const Settings& variant,
                           double ratio, int rotationDirection);
