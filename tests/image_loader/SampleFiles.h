#pragma once

#include <QByteArray>
#include <QImage>
#include <QList>
#include <QString>

/// Small files of the formats that our own readers take, made byte by byte as their published descriptions
/// say, and what they show.
struct SampleFile {
    QString name; ///< tells the kind; ends in the extension
    QByteArray bytes;
    QImage picture;
};

/// Seven by five pixels, each channel of which is 0 or 255, so that every format without loss can hold it.
QImage samplePicture(bool withAlpha);

/// The same size in shades of grey.
QImage greyPicture();

QList<SampleFile> tgaSamples();
QList<SampleFile> ppmSamples();
QList<SampleFile> psdSamples();
QList<SampleFile> tiffSamples();
QList<SampleFile> pvrSamples(); ///< without the compressed formats

/// Appends a number in `count` bytes.
QByteArray littleEndian(quint64 number, int count);
QByteArray bigEndian(quint64 number, int count);

QByteArray pvr2File(quint32 flags, int width, int height, const QByteArray& pixels, quint32 alphaMask = 0);
QByteArray pvr3File(quint64 format, quint32 channelType, int width, int height, const QByteArray& pixels,
                    const QByteArray& metadata = {});

/// A zlib container with that header around bytes that are packed already.
QByteArray cczFile(const QByteArray& packed, quint32 size, int type = 0, int version = 2);
