#pragma once

#include <QImage>
#include <QPoint>
#include <QRect>

/// The steps from a source image to the image on the sheet. Pure functions of ARGB32 images (not
/// premultiplied), which copy pixels exactly where they move them; lengths are pixels. A null image gives a
/// null image. Any thread. All throw Error (OutOfMemory) where a new image can't be made.
namespace SpritePreparation {

/// A size or alpha of the settings as the signed number that the steps count with; cut to what an int holds.
int length(uint value);

/// Makes the border transparent (pixels to 0): what the toolkit's heuristic, which looks at the corners,
/// counts as background.
QImage maskHeuristically(const QImage& image);

/// Repeats the outermost pixels `extrude` times on all four sides.
QImage extrudeBorder(const QImage& image, int extrude);

/// Puts the image into the middle of a transparent one whose sides are the next multiples of the divisors. A
/// remainder of one pixel goes to the right and to the bottom.
QImage padToDivisors(const QImage& image, int divisorX, int divisorY);

struct TrimResult {
    QImage image;
    QPoint offset; ///< top left of `image` in the image that was trimmed
};

/// Cuts transparent borders off. Pixels of an alpha below `threshold` count as transparent; `extrude` pixels
/// around the others stay. A side of the result keeps the parity of the image's side, and starts and ends at
/// multiples of the divisor, beyond the image's edge if it must. An image without any other pixel becomes a
/// transparent one of (divisorX + 2 extrude) x (divisorY + 2 extrude), so that it can be placed.
TrimResult trimTransparent(const QImage& image, int threshold, int extrude, int divisorX, int divisorY);

/// Adds transparent pixels on all four sides.
QImage addInnerPadding(const QImage& image, int padding);

/// Half transparent red below the image, and a red outline whose right and bottom lines lie one pixel inside.
QImage drawDebugFrame(const QImage& image);

/// Cuts a rectangle out; what lies outside of the image is transparent. An empty rectangle gives a null
/// image.
QImage cutOut(const QImage& image, const QRect& rectangle);

/// Hash over 100 pixels along a wrapped diagonal: selects candidates of equality, nothing more. 0 for a null
/// image alone.
quint32 pixelHash(const QImage& image);

} // namespace SpritePreparation
