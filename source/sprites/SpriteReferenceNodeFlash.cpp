#include "SpriteReferenceNodeFlash.h"

#include "SpriteTreeVisitor.h"

void SpriteReferenceNodeFlash::accept(SpriteTreeVisitor& visitor) { visitor.visitFlashReference(*this); }
