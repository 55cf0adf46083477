#pragma once

#include "PackedResult.h"

class Sprite;

/// An entry with the name and id of a sprite, and one for each of its aliases.
PackedSprite makePackedSprite(const Sprite& sprite);

/// Gives every entry of the result, aliases included, the current data of the sprite of its name. `sprites`
/// are all sprites of the job, `rotationDirection` is that of the data format. Where the result comes from an
/// attempt that was made for earlier sprites, its ids and alias lists are brought up to date as well. Changes
/// the cached attempt with it.
void fillResult(PackedResult& result, const QList<Sprite>& sprites, int rotationDirection);

/// Gives an entry the image and the numbers of a sprite. An alias gets no image of its own.
void copySpriteData(PackedSprite& packed, const Sprite& sprite, int rotationDirection);
