// Writes small good files of every image format as the first inputs of the fuzz entries:
//   make_image_corpus fuzz/corpus

#include "ImageLoader.h"
#include "PvrPixelFormat.h"
#include "PvrWriter.h"
#include "SampleFiles.h"

#include <QCoreApplication>
#include <QDir>
#include <QTextStream>

#include <cstdlib>

namespace {

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (!QDir().mkpath(QFileInfo(path).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(bytes) != bytes.size()) {
        QTextStream(stderr) << "Can't write " << path << '\n';
        std::exit(1);
    }
}

QList<SampleFile> compressedSamples() {
    const QImage sheet = samplePicture(true).scaled(16, 16);
    QList<SampleFile> files;
    for (int format = 0; format < 4; ++format)
        files += {QStringLiteral("pvrtc_%1.pvr").arg(format),
                  pvr2Data(sheet, {{QStringLiteral("pixelformat"), format}}), sheet};
    files +=
        {QStringLiteral("etc1.pvr"), pvr3File(pvrPixelFormat::etc1, 0, 5, 4, QByteArray(16, '\x55')), {}};
    return files;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        QTextStream(stderr) << "make_image_corpus FOLDER\n";
        return 1;
    }
    const QDir corpus(QString::fromLocal8Bit(argv[1]));
    const std::pair<const char*, QList<SampleFile>> entries[] = {
        {"tga_reader", tgaSamples()},
        {"ppm_reader", ppmSamples()},
        {"psd_reader", psdSamples()},
        {"tiff_reader", tiffSamples()},
        {"pvr_reader", pvrSamples() + compressedSamples()}};
    for (const auto& [entry, files] : entries)
        for (const SampleFile& file : files)
            write(corpus.filePath(QLatin1String(entry) + QLatin1Char('/') + file.name), file.bytes);
    corpus.mkpath(QStringLiteral("pkm_reader"));
    QtUniversalImageLoader::ImageLoader::instance()->save(
        corpus.filePath(QStringLiteral("pkm_reader/odd.pkm")), QStringLiteral("pkm"), samplePicture(false));
    corpus.mkpath(QStringLiteral("toolkit_reader"));
    for (const char* format : {"png", "bmp", "jpg", "ico", "webp", "xpm", "pgm"})
        samplePicture(true).save(
            corpus.filePath(QStringLiteral("toolkit_reader/a.") + QLatin1String(format)));
    write(corpus.filePath(QStringLiteral("toolkit_reader/a.svg")),
          "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='5'><rect width='4' height='5'/></svg>");
    return 0;
}
