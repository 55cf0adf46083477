#pragma once

#include "PackedTexture.h"
#include "Settings.h"

#include <QImage>
#include <QString>

/// Stores a sheet in one image file. Lives for one write, in the job's worker thread.
class ImageExporter {
public:
    virtual ~ImageExporter() = default;

    /// The name of a file that nobody named.
    virtual QString defaultFileName() const = 0;

    /// Renders the sheet and stores it under fileName(). The file appears under its name only when it is
    /// complete. Throws Error.
    virtual void write(const Settings& settings, const PackedTexture& texture) = 0;

    /// The name set, or else defaultFileName().
    QString fileName() const { return m_fileName.isEmpty() ? defaultFileName() : m_fileName; }
    void setFileName(const QString& fileName) { m_fileName = fileName; }

    /// The sheet as an ARGB32 image: each sprite's pixels put over the background without blending, and
    /// transparent pixels coloured if the settings ask for it. Throws Error: TextureFile for a sheet without
    /// pixels, OutOfMemory, PixelFormat where transparent pixels of a format without reduction are to be
    /// coloured.
    static QImage renderTexture(const Settings& settings, const PackedTexture& texture);

private:
    QString m_fileName;
};
