#include "LayoutInputs.h"

#include "GSerializableWriter.h"
#include "PixelFormats.h"
#include "Settings.h"
#include "Sprite.h"
#include "SpritePreparation.h"

#include <QBuffer>

namespace {

QString serialised(const GSerializable& object) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    GSerializableWriter writer(&buffer, QDir());
    object.write(writer);
    return QString::fromUtf8(bytes);
}

QStringList keysOf(const QList<Sprite>& sprites) {
    QStringList keys;
    keys.reserve(sprites.size());
    for (const Sprite& sprite : sprites) {
        const QSize size = sprite.paddedSize();
        keys.append(QStringLiteral("%1|%2|").arg(size.width()).arg(size.height()) +
                    QString::fromUtf8(sprite.fileData().hashText()));
    }
    keys.sort();
    return keys;
}

} // namespace

LayoutInputs::LayoutInputs(const Settings& settings, const QList<Sprite>& sprites, int factor)
    : spriteKeys(keysOf(sprites)), maxSize(settings.maxTextureSize()), fixedSize(settings.fixedTextureSize()),
      borderPadding(SpritePreparation::length(settings.borderPadding())),
      shapePadding(SpritePreparation::length(settings.shapePadding())),
      outputFormat(int(settings.outputFormat())), autoAlias(settings.autoAliasEnabled()),
      allowRotation(settings.allowRotation()), baseFactor(factor) {
    const AlgorithmSettings& algorithm = *settings.algorithmSettings();
    forceWordAligned = algorithm.forceWordAligned();
    // Devices take these formats as squares of a power of two alone; the settings keep what the user chose.
    const bool isPvrtc = isPvrtcFormat(settings.outputFormat());
    sizeConstraints = int(isPvrtc ? AlgorithmSettings::SizeConstraints::POT : algorithm.sizeConstraints());
    forceSquared = isPvrtc || algorithm.forceSquared();
    algorithmText = serialised(algorithm);
}
