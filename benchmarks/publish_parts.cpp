// publish_parts FOLDER SHEET: the time of what no publish can do without: decoding the images of the folder
// on all cores and encoding the sheet, each in seconds.

#include "ImageLoader.h"
#include "SheetPng.h"

#include <QDir>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QtConcurrent>

#include <cstdio>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 3) {
        std::fputs("usage: publish_parts FOLDER SHEET\n", stderr);
        return 1;
    }
    const auto* loader = QtUniversalImageLoader::ImageLoader::instance(false);
    const QImage sheet = loader->load(QString::fromLocal8Bit(argv[2]));
    struct Item {
        QString file;
        QImage image;
    };
    QVector<Item> items;
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (const QString& name : folder.entryList(QDir::Files))
        items.append({folder.filePath(name), {}});

    QElapsedTimer timer;
    timer.start();
    QtConcurrent::blockingMap(items, [loader](Item& item) { item.image = loader->load(item.file); });
    const double decoding = double(timer.nsecsElapsed()) / 1e9;

    timer.restart();
    const bool written = !encodeSheetPng(sheet.convertToFormat(QImage::Format_ARGB32)).isEmpty();
    const double encoding = double(timer.nsecsElapsed()) / 1e9;

    std::printf("%d images decoded in %.3f s, sheet of %d x %d encoded in %.3f s, together %.3f s\n",
                items.size(), decoding, sheet.width(), sheet.height(), encoding, decoding + encoding);
    return written ? 0 : 1;
}
