#include "ImageExporter.h"

#include "BorderColorFiller.h"
#include "Error.h"
#include "NewImage.h"

#include <algorithm>
#include <limits>

namespace {

using Format = SettingsBase::OutputFormat;

QRgb fillValue(const Settings& settings) {
    constexpr QRgb black = 0xFF000000;
    const Format format = settings.outputFormat();
    if (format == Format::ALPHA)
        return black;
    const bool opaque = format == Format::RGB565 || format == Format::RGB888;
    return settings.backgroundColor() == 0 && opaque ? black : settings.backgroundColor();
}

/// Copies the image over what stands there, as far as it lies on the canvas.
void stamp(QImage& canvas, const QImage& image, const QPoint& position) {
    const QRect place = QRect(position, image.size()).intersected(canvas.rect());
    for (int y = place.top(); y <= place.bottom(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(image.constScanLine(y - position.y()));
        auto* to = reinterpret_cast<QRgb*>(canvas.scanLine(y));
        std::copy_n(from + (place.left() - position.x()), place.width(), to + place.left());
    }
}

} // namespace

QImage ImageExporter::renderTexture(const Settings& settings, const PackedTexture& texture) {
    if (texture.width() < 1 || texture.height() < 1)
        throw Error(Error::TextureFile, QStringLiteral("Resulting image is empty."));
    QImage canvas = newImage(texture.width(), texture.height());
    // The factor of dots per metre is short by a little; published files have this value.
    const int dotsPerMeter =
        qRound(std::min(settings.dpi() * 39.37, double{std::numeric_limits<int>::max()}));
    canvas.setDotsPerMeterX(dotsPerMeter);
    canvas.setDotsPerMeterY(dotsPerMeter);
    canvas.fill(fillValue(settings));
    for (const PackedSprite& sprite : texture.sprites())
        stamp(canvas, toArgb32(sprite.image()), sprite.position());
    if (settings.reduceBorderArtifacts())
        canvas = fillBorderColors(canvas, pixelFormatCode(settings.outputFormat()));
    return canvas;
}
