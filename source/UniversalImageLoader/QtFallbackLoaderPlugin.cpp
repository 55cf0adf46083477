#include "QtFallbackLoaderPlugin.h"

#include "DeclaredSize.h"
#include "ImageLimits.h"
#include "ImageLoader.h"
#include "OutputFile.h"
#include "PngTexts.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>

#include <optional>

namespace QtUniversalImageLoader {

namespace {

QStringList remainingExtensions(const ImageLoader& loader) {
    const QStringList taken = loader.allExtensions();
    QStringList extensions;
    for (const QByteArray& format : QImageReader::supportedImageFormats()) {
        const QString extension = QString::fromUtf8(format);
        // What the table only reads or only writes stays here as well, for the other direction.
        if (taken.contains(extension) && loader.canRead(extension) && loader.canWrite(extension))
            continue;
        if (!extensions.contains(extension))
            extensions.append(extension);
    }
    return extensions;
}

const QHash<QString, QString>& descriptions() {
    static const QHash<QString, QString> table = {
        {QStringLiteral("bmp"), QStringLiteral("Bitmap")},
        {QStringLiteral("gif"), QStringLiteral("Graphics Interchange Format")},
        {QStringLiteral("ico"), QStringLiteral("Icon (Windows)")},
        {QStringLiteral("jpg"), QStringLiteral("Joint Photographic Experts Group")},
        {QStringLiteral("jpeg"), QStringLiteral("Joint Photographic Experts Group")},
        {QStringLiteral("mng"), QStringLiteral("Multiple-image Network Graphics")},
        {QStringLiteral("pbm"), QStringLiteral("Portable Bitmap")},
        {QStringLiteral("pgm"), QStringLiteral("Portable Gray Map")},
        {QStringLiteral("png"), QStringLiteral("Portable Network Graphics")},
        {QStringLiteral("ppm"), QStringLiteral("Portable Pixmap")},
        {QStringLiteral("svg"), QStringLiteral("Scalabe Vector Graphics")},
        {QStringLiteral("svgz"), QStringLiteral("Scalabe Vector Graphics")},
        {QStringLiteral("tga"), QStringLiteral("Targe Image Format")},
        {QStringLiteral("tif"), QStringLiteral("Tagged Image Format")},
        {QStringLiteral("tiff"), QStringLiteral("Tagged Image Format")},
        {QStringLiteral("xbm"), QStringLiteral("X Bitmap")},
        {QStringLiteral("xpm"), QStringLiteral("X Pixmap")},
    };
    return table;
}

// The file's own extension where the toolkit knows it.
QByteArray writerFormat(const QString& path, const QString& asked) {
    const QByteArray suffix = QFileInfo(path).suffix().toLower().toLatin1();
    return QImageWriter::supportedImageFormats().contains(suffix) ? suffix : asked.toLower().toLatin1();
}

/// Keeps a file's compressed texts from the toolkit, which would inflate them all; `buffer` takes what the
/// reader reads then. False for files that can't be read that way.
bool leaveTexts(QImageReader& reader, QBuffer& buffer) {
    const QByteArray format = reader.format();
    const bool isIcon = format == "ico" || format == "cur";
    if (!isIcon && format != "png")
        return true;
    // No file of a picture that may be read is larger than its pixels, but for a little.
    constexpr qint64 mostBytes = 5 * ImageLimits::maximumPixels;
    QIODevice& device = *reader.device();
    if (isIcon)
        return device.size() <= mostBytes && device.seek(0) && !hasManyPngTexts(device.readAll()) &&
               device.seek(0);
    if (!hasPngTexts(device))
        return device.seek(0);
    const std::optional<QByteArray> picture = withoutPngTexts(device, mostBytes);
    if (!picture)
        return false;
    buffer.setData(*picture);
    buffer.open(QIODevice::ReadOnly);
    reader.setDevice(&buffer);
    reader.setFormat(format);
    return true;
}

} // namespace

QtFallbackLoaderPlugin::QtFallbackLoaderPlugin(const ImageLoader& loader)
    : ImageLoaderPlugin(remainingExtensions(loader), QStringLiteral("qt-fallback"), true) {}

bool QtFallbackLoaderPlugin::save(const QString& path, const QImage& image,
                                  const QHash<QString, QVariant>& options) const {
    if (image.isNull())
        return false;
    // Through a device of ours: the toolkit's own way by name doesn't say if the disk was full at the end.
    OutputFile file(path);
    if (!file.open())
        return false;
    QImageWriter writer(&file.device(), writerFormat(path, options.value(formatKey).toString()));
    return writer.write(image) && file.device().flush() && file.commit();
}

bool QtFallbackLoaderPlugin::load(const QString& path, QImage* image, QString* format,
                                  QHash<QString, QVariant>*) const {
    if (!image)
        return false;
    QImageReader reader(path);
    QBuffer pictureAlone;
    // In this order: to tell a size the toolkit's icon reader decodes the picture.
    if (!ImageLimits::accept(declaredSize(path, reader.format())) || !leaveTexts(reader, pictureAlone) ||
        !ImageLimits::accept(reader.size()))
        return false;
    *image = reader.read();
    // A picture inside may be larger than the header said.
    if (image->isNull() || !ImageLimits::accept(image->size())) {
        *image = QImage();
        return false;
    }
    if (format)
        *format = path.mid(path.lastIndexOf(QLatin1Char('.')) + 1);
    return true;
}

QMap<QString, QString> QtFallbackLoaderPlugin::formats() const {
    QMap<QString, QString> formats;
    for (const QString& extension : extensions())
        formats.insert(extension, descriptions().value(extension, QStringLiteral("Image format")));
    return formats;
}

} // namespace QtUniversalImageLoader
