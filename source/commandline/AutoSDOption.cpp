#include "AutoSDOption.h"

#include "Error.h"
#include "HalfSizeNames.h"
#include "Settings.h"

#include <QDebug>

namespace {

[[noreturn]] void fail(const QString& message) {
    throw Error(Error::CommandLine, QStringLiteral("--autosd-variant: ") + message);
}

float parseScale(const QString& text) {
    bool isNumber = false;
    const float scale = text.toFloat(&isNumber);
    if (!isNumber)
        fail(QStringLiteral("First value must be a floating point value (scale), is: %1").arg(text));
    // Written so that "nan" is out of the range too.
    if (!(scale >= 0.01f && scale <= 10.0f))
        fail(QStringLiteral("scale must be between 0.01 and 10.0, is: %1").arg(double(scale)));
    return scale;
}

int parseSide(const QString& text, const QString& what) {
    bool isNumber = false;
    const int side = text.toInt(&isNumber, 10);
    if (!isNumber)
        fail(QStringLiteral("argument (%1) must be integer, is: %2").arg(what, text));
    if (side < 1)
        fail(QStringLiteral("argument (%1) at least be 1, is: %2").arg(what, text));
    return side;
}

} // namespace

std::unique_ptr<AutoSDSettings> parseAutoSDVariant(const QString& expression) {
    QStringList parts = expression.split(QLatin1Char(':'));
    if (parts.size() < 2)
        fail(QStringLiteral("Value must contain at least <scale>:<extenstion>, is: %1").arg(expression));
    const float scale = parseScale(parts.takeFirst());
    const QString extension = parts.takeFirst();
    const bool acceptFractions = !parts.isEmpty() && parts.first() == QLatin1String("allowfraction");
    if (acceptFractions)
        parts.removeFirst();
    QSize size(2048, 2048);
    if (!parts.isEmpty()) {
        size.setWidth(parseSide(parts.takeFirst(), QStringLiteral("width/size")));
        size.setHeight(size.width());
    }
    if (!parts.isEmpty())
        size.setHeight(parseSide(parts.takeFirst(), QStringLiteral("height")));
    if (!parts.isEmpty())
        fail(QStringLiteral("Value must be <scale>:<extenstion>[:allowfraction][:<width>[:<height>]], is: %1")
                 .arg(expression));
    qDebug() << "variant" << scale << extension << acceptFractions << size;

    auto variant = std::make_unique<AutoSDSettings>();
    variant->setExtension(extension);
    variant->setScale(double(scale));
    variant->setMaxTextureSize(size);
    variant->setAcceptFractionalValues(acceptFractions);
    return variant;
}

void addHalfSizeVariant(Settings& settings) {
    const std::optional<HalfSizeNames> names = halfSizeNames(settings.textureFileName());
    if (!names)
        throw Error(
            Error::DataFile,
            QStringLiteral("Texture filename for --auto-sd must end with -hd, -ipadhd, @2x or 2x. Use "
                           "--autosd-variant for more options."));
    settings.setMainExtension(names->mainExtension);
    auto variant = std::make_unique<AutoSDSettings>();
    variant->setExtension(names->extension);
    variant->setScale(0.5);
    settings.addAutoSDSettings(variant.release());
}
