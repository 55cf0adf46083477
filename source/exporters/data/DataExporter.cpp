#include "DataExporter.h"

#include "Settings.h"
#include "SourceStamp.h"

#include <QFileInfo>
#include <QMap>

#include <algorithm>

DataExporter::DataExporter(const DataExporterInfo& info) : m_info(info) {}

DataExporter::~DataExporter() = default;

QString DataExporter::versionString() const { return QString::fromLatin1(sourceStamp); }

QString DataExporter::nameInFile(const PackedSprite& sprite) const {
    return m_settings->trimSpriteNames() ? sprite.trimmedName() : sprite.fullName();
}

QString DataExporter::fileName() const { return m_fileName.isEmpty() ? defaultFileName() : m_fileName; }

void DataExporter::setInput(Settings* settings, const PackedTexture& texture) {
    m_settings = settings;
    m_texture = texture;
}

QString DataExporter::textureName() const { return QFileInfo(m_settings->textureFileName()).fileName(); }

QString DataExporter::textureFilePath() const {
    const QString subPath = m_settings->textureSubPath();
    return subPath.isEmpty() ? textureName() : subPath + QLatin1Char('/') + textureName();
}

QList<PackedSprite> DataExporter::sortedSprites() const {
    QList<PackedSprite> list;
    for (const PackedSprite& sprite : m_texture.sprites()) {
        list.append(sprite);
        list.append(sprite.aliasList());
    }
    std::stable_sort(list.begin(), list.end(), [](const PackedSprite& a, const PackedSprite& b) {
        return a.fullName() < b.fullName();
    });
    return list;
}

QStringList DataExporter::duplicateNames() const {
    QMap<QString, QStringList> fullNames;
    for (const PackedSprite& sprite : sortedSprites())
        fullNames[nameInFile(sprite)].append(sprite.fullName());
    QStringList sentences;
    for (auto entry = fullNames.constBegin(); entry != fullNames.constEnd(); ++entry) {
        if (entry->size() > 1)
            sentences.append(QStringLiteral("Sprites with the same name \"%1\" in the data file: %2")
                                 .arg(entry.key(), entry->join(QStringLiteral(", "))));
    }
    return sentences;
}
