#pragma once

#include "FileData.h"
#include "GCachedImage.h"

#include <QExplicitlySharedDataPointer>
#include <QImage>
#include <QList>
#include <QMetaType>
#include <QPoint>
#include <QRect>
#include <QRectF>
#include <QSize>
#include <QString>

/// One sprite on a sheet, with all that a data file or the preview needs to know. Pixels everywhere;
/// rectangles are those of the sheet unless the name says otherwise.
///
/// A handle: copies share one record (the count is atomic), and setters write through to all of them. That is
/// how the filling of a result also brings the cached attempt up to date that the result came from. Setters
/// belong to the worker thread; once the result has left the core it is only read, from any thread.
class PackedSprite {
public:
    /// Turn of a rotated sprite on the sheet.
    enum RotationDirection : int { Clockwise = 0, CounterClockwise = 1 };

    /// A sprite without a name, with id -1.
    PackedSprite();
    PackedSprite(const QString& fullName, int id);
    PackedSprite(const PackedSprite& other);
    PackedSprite(PackedSprite&& other) noexcept;
    PackedSprite& operator=(const PackedSprite& other);
    PackedSprite& operator=(PackedSprite&& other) noexcept;
    ~PackedSprite();

    /// A record of its own with equal fields, for the aliases too.
    PackedSprite clone() const;

    const QString& fullName() const;

    /// The sprite's id in the job, -1 at first.
    int id() const;
    void setId(int id);

    /// Top left of the image on the sheet, (-1, -1) at first.
    QPoint position() const;
    void setPosition(QPoint position);
    /// True once both coordinates are other than -1.
    bool hasPosition() const;

    /// Size in the packer, with the shape padding, before rotation.
    QSize paddedSize() const;
    void setPaddedSize(QSize size);

    bool rotated() const;
    void setRotated(bool rotated);

    /// This entry shares the place and the pixels of another one.
    bool alias() const;
    void setAlias(bool alias);
    const QList<PackedSprite>& aliasList() const;
    /// Sets the alias flag of the sprite and appends it.
    void addAlias(PackedSprite sprite);
    void clearAliases();

    /// The prepared image as it stands upright; not set for an alias.
    const GCachedImage& cachedImage() const;
    void setCachedImage(const GCachedImage& image);

    /// The sprite's image, turned as it lies on the sheet. Throws Error (OutOfMemory, or CacheFile when the
    /// image was swapped out and can't be read back).
    QImage image() const;

    /// A RotationDirection, from the data format.
    int rotationDirection() const;
    void setRotationDirection(int direction);

    /// Transparent pixels were removed, and the data file keeps the size before trimming.
    bool trimmed() const;
    void setTrimmed(bool trimmed);

    /// Rows of extrusion around the real picture.
    int inset() const;
    void setInset(int inset);

    QSize untrimmedSize() const;
    void setUntrimmedSize(QSize size);

    /// Corner of the image within the untrimmed one.
    QPoint cornerOffset() const;
    void setCornerOffset(QPoint offset);

    /// Size of the image before rotation.
    QSize size() const;
    void setSize(QSize size);

    /// Size of the sheet.
    QSize textureSize() const;
    void setTextureSize(QSize size);

    const FileData& fileData() const;
    void setFileData(const FileData& fileData);

    /// Place of the picture without its extrusion, as wide and high as the sprite stands upright.
    QRect frameRectWithoutRotation() const;

    /// The place that the picture takes on the sheet: as above, with the sides swapped if it lies rotated.
    QRect frameRect() const;

    /// frameRect() as fractions of the sheet's sides.
    QRectF frameRectRel() const;

    /// The kept part within the untrimmed image.
    QRect sourceRect() const;

    /// fullName() without the file extensions of images, and without the ".swf" of a movie's folder part.
    QString trimmedName() const;

private:
    struct Data;
    struct Details;
    const Details& details() const;
    Details& writableDetails();

    QExplicitlySharedDataPointer<Data> m_data;
};

Q_DECLARE_TYPEINFO(PackedSprite, Q_MOVABLE_TYPE);
Q_DECLARE_METATYPE(PackedSprite)
