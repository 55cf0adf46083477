#pragma once

#include "PackedTexture.h"

/// What a packing attempt, a layout or a job gives: the sheets, and the sprites that didn't fit. A handle
/// like PackedSprite: copies share one record, so that results travel in queued signals and stay in caches.
class PackedResult {
public:
    PackedResult();
    PackedResult(const PackedResult& other);
    PackedResult(PackedResult&& other) noexcept;
    PackedResult& operator=(const PackedResult& other);
    PackedResult& operator=(PackedResult&& other) noexcept;
    ~PackedResult();

    /// A record of its own down to the last sprite: what is written to it reaches no other result. Lets a
    /// result leave the core that no later filling of the attempt can change under its reader.
    PackedResult clone() const;

    /// The packers make one sheet; an empty result has none.
    const QList<PackedTexture>& textures() const;
    void addTexture(const PackedTexture& texture);

    /// Sprites that didn't fit.
    const QList<PackedSprite>& unplaced() const;
    void addUnplaced(const PackedSprite& sprite);

    /// Neither a sheet nor an unplaced sprite.
    bool isEmpty() const;
    bool allPlaced() const;

    /// Sum of the sheets' areas, in pixels.
    qint64 totalArea() const;
    /// Sum of the sheets' free areas, in pixels.
    qint64 totalFreeArea() const;
    /// Free part of the total area; not a number for a total area of 0.
    float freeRatio() const;
    /// Number of sprites that lie rotated, aliases not counted.
    qint64 rotationCount() const;

    /// Fewer unplaced sprites are better, then the smaller total area, then fewer rotated sprites. Every
    /// result is better than an empty one.
    bool isBetterThan(const PackedResult& other) const;

private:
    struct Data;
    QExplicitlySharedDataPointer<Data> m_data;
};

Q_DECLARE_TYPEINFO(PackedResult, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(PackedResult)
