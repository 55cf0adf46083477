#pragma once

#include "FileData.h"
#include "GCachedImage.h"

#include <QImage>
#include <QList>
#include <QPoint>
#include <QSize>
#include <QString>

#include <memory>

class Settings;

/// A source image, the image prepared from it for the sheet, and the numbers that reach the data file.
/// An implicitly shared handle: copies share one record, and nothing detaches it. Preparation runs in pool
/// threads, one sprite a call; everything else belongs to the worker thread.
class Sprite {
public:
    /// A null sprite: no name, id -1.
    Sprite();

    /// A sprite without an image, with a process-wide unique id.
    Sprite(const QString& name, const FileData& fileData);

    /// Takes a new source image (ARGB32, not premultiplied); the next update() prepares it.
    void setImage(const GCachedImage& image);

    /// Brings image and numbers up to date with the settings; nothing is done if none of the values that
    /// reach pixels changed. Never throws: a fault leaves the former image and is kept in failure(), and the
    /// next call tries again.
    void update(const Settings& settings);

    /// The sprite at another scale in the same layout: the rectangle of the prepared image, scaled, cut from
    /// the newly scaled source. `scale` is the variant's whole scale, `extrude` its extrusion in pixels.
    /// Throws Error.
    QImage renderScaled(double scale, int extrude) const;

    const QString& name() const;
    const FileData& fileData() const;
    int id() const;

    /// The prepared image; null before the first update() that worked.
    const GCachedImage& image() const;

    /// Size of the prepared image plus the shape padding on each axis, in pixels: what the packers work with.
    QSize paddedSize() const;

    /// Size before trimming, inner padding counted and extrusion not; (-1, -1) at first.
    QSize size() const;

    /// Corner of the prepared image within the untrimmed one.
    QPoint offset() const;

    bool trimmed() const;

    /// Hash over a sample of the prepared image's pixels, for finding equal sprites; 0 before the first
    /// update.
    quint32 hash() const;

    /// Extrusion that the prepared image was made with, in pixels.
    int extrude() const;

    /// Why the last update() failed; empty if it didn't.
    const QString& failure() const;

    /// Sprites with equal pixels that share this one's place on the sheet.
    const QList<Sprite>& aliases() const;
    void clearAliases();
    void addAlias(const Sprite& sprite);

private:
    struct Data;
    std::shared_ptr<Data> m_data;
};
