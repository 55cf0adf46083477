#include "DataExporterCocos2d.h"

#include "Error.h"
#include "PlistWriter.h"

#include <QPointF>

namespace {

/// From the centre of the untrimmed image to the centre of the kept part, with y pointing up.
QPointF centreOffset(const PackedSprite& sprite) {
    const QRect source = sprite.sourceRect();
    const QSize whole = sprite.untrimmedSize();
    // Subtracted from zero: a changed sign would give "-0" for a sprite that isn't trimmed.
    return {source.x() + 0.5 * (source.width() - whole.width()),
            0.0 - (source.y() + 0.5 * (source.height() - whole.height()))};
}

QVariantMap originalFrame(const PackedSprite& sprite) {
    const QRect rect = sprite.frameRectWithoutRotation();
    const QPointF offset = centreOffset(sprite);
    return {{QStringLiteral("x"), rect.x()},
            {QStringLiteral("y"), rect.y()},
            {QStringLiteral("width"), rect.width()},
            {QStringLiteral("height"), rect.height()},
            {QStringLiteral("offsetX"), offset.x()},
            {QStringLiteral("offsetY"), offset.y()},
            {QStringLiteral("originalWidth"), sprite.untrimmedSize().width()},
            {QStringLiteral("originalHeight"), sprite.untrimmedSize().height()}};
}

} // namespace

DataExporterCocos2d::DataExporterCocos2d(const DataExporterInfo& info, Variant variant)
    : DataExporter(info), m_variant(variant) {}

QVariantMap DataExporterCocos2d::frame(const PackedSprite& sprite) const {
    if (m_variant == Original)
        return originalFrame(sprite);
    QVariantMap frame{{QStringLiteral("frame"), sprite.frameRectWithoutRotation()},
                      {QStringLiteral("offset"), centreOffset(sprite)},
                      {QStringLiteral("sourceSize"), sprite.untrimmedSize()}};
    if (m_variant == Rotating) {
        frame.insert(QStringLiteral("rotated"), sprite.rotated());
        frame.insert(QStringLiteral("sourceColorRect"), sprite.sourceRect());
    }
    return frame;
}

QVariantMap DataExporterCocos2d::metadata() const {
    QVariantMap metadata{{QStringLiteral("format"), static_cast<int>(m_variant)},
                         {QStringLiteral("size"), texture().size()},
                         {QStringLiteral("realTextureFileName"), textureFilePath()},
                         {QStringLiteral("textureFileName"), textureFilePath()}};
    if (!smartUpdateKey().isEmpty())
        metadata.insert(QStringLiteral("smartupdate"), smartUpdateKey());
    return metadata;
}

void DataExporterCocos2d::write() const {
    QVariantMap frames;
    for (const PackedSprite& sprite : sortedSprites())
        frames.insert(nameInFile(sprite), frame(sprite));
    QVariantMap root{{QStringLiteral("frames"), frames}, {QStringLiteral("metadata"), metadata()}};
    if (m_variant == Original)
        root.insert(QStringLiteral("texture"), QVariantMap{{QStringLiteral("width"), texture().width()},
                                                           {QStringLiteral("height"), texture().height()}});
    if (!PlistWriter(fileName()).write(root))
        throw Error(Error::DataFile, QStringLiteral("Failed to write plist file %1").arg(fileName()));
}
