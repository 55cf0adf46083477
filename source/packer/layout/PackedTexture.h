#pragma once

#include "PackedSprite.h"

#include <QHash>

/// One sheet of a result. A handle like PackedSprite: copies share one record, setters write through, and it
/// is only read once the result has left the core.
class PackedTexture {
public:
    /// A sheet without sprites, of size -1 x -1.
    PackedTexture();
    PackedTexture(int borderPadding, int shapePadding);
    PackedTexture(const PackedTexture& other);
    PackedTexture(PackedTexture&& other) noexcept;
    PackedTexture& operator=(const PackedTexture& other);
    PackedTexture& operator=(PackedTexture&& other) noexcept;
    ~PackedTexture();

    /// A record of its own with records of its own for all sprites.
    PackedTexture clone() const;

    /// Size of the sheet in pixels.
    int width() const;
    int height() const;
    QSize size() const;
    void setSize(QSize size);

    /// Paddings that the sheet was packed with, in pixels.
    int borderPadding() const;
    int shapePadding() const;

    /// Appends a placed sprite, and all its aliases to allSprites() and spritesById().
    void add(const PackedSprite& sprite);

    /// Takes all sprites out.
    void clear();

    /// Placed sprites, each followed by its aliases.
    const QList<PackedSprite>& allSprites() const;

    /// Placed sprites that own pixels, without aliases.
    const QList<PackedSprite>& sprites() const;

    /// The members of allSprites().
    const QHash<int, PackedSprite>& spritesById() const;

    /// Width times height, in pixels.
    qint64 area() const;

    /// What the sprites and the border leave of the sheet, in pixels; padding between sprites counts as
    /// taken.
    qint64 freeArea() const;

private:
    struct Data;
    QExplicitlySharedDataPointer<Data> m_data;
};

Q_DECLARE_TYPEINFO(PackedTexture, Q_MOVABLE_TYPE);
