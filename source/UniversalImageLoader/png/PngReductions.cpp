#include "PngReductions.h"

#include "PngPaletteConversion.h"
#include "PngPaletteReduction.h"
#include "PngSampleReduction.h"

bool reducePicture(PngPicture& picture, unsigned mask, const PngOptions& options, PngLog& log) {
    if (picture.hasPalette())
        return reducePalette(picture, mask, options, log);
    const bool samples = reduceSamples(picture, mask);
    const bool converted = convertToPalette(picture, mask);
    return samples || converted;
}

QString pngTypeText(const PngPicture& picture) {
    const QString bits =
        picture.channels() > 1
            ? QStringLiteral("%1x%2 bits/pixel").arg(picture.channels()).arg(picture.bitDepth)
            : QStringLiteral("%1 bit%2/pixel")
                  .arg(picture.bitDepth)
                  .arg(picture.bitDepth == 1 ? QString() : QStringLiteral("s"));
    QString kind = picture.hasColor() ? QStringLiteral("RGB") : QStringLiteral("grayscale");
    if (picture.hasPalette()) {
        kind =
            QStringLiteral("%1 colors%2 in palette")
                .arg(picture.palette.size())
                .arg(picture.alphas.empty() ? QString()
                                            : QStringLiteral(" (%1 transparent)").arg(picture.alphas.size()));
    } else if (picture.hasAlpha()) {
        kind += QStringLiteral("+alpha");
    } else if (picture.transparent) {
        kind += QStringLiteral("+transparency");
    }
    return bits + QStringLiteral(", ") + kind;
}
