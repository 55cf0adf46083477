// sheet_png IMAGE...: each image as a sheet that isn't optimised, by the toolkit at quality 0 and by our
// writer: bytes, processor seconds (the best of three runs), seconds on the clock. Fails if a file of ours is
// larger or has other pixels.

#include "SheetPng.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <functional>

namespace {

struct Cost {
    double processor = 1e9;
    double clock = 1e9;
};

Cost costOf(const std::function<void()>& work, int runs) {
    Cost cost;
    for (int run = 0; run < runs; ++run) {
        const std::clock_t begin = std::clock();
        QElapsedTimer timer;
        timer.start();
        work();
        cost.clock = std::min(cost.clock, double(timer.nsecsElapsed()) / 1e9);
        cost.processor = std::min(cost.processor, double(std::clock() - begin) / CLOCKS_PER_SEC);
    }
    return cost;
}

bool isWorse(const QString& name) {
    QImage image(name);
    if (image.hasAlphaChannel())
        image = image.convertToFormat(QImage::Format_ARGB32);
    QByteArray toolkit;
    const Cost theirs = costOf(
        [&] {
            QBuffer buffer(&toolkit);
            buffer.open(QIODevice::WriteOnly);
            image.save(&buffer, "png", 0);
        },
        1);
    QByteArray file;
    const Cost ours = costOf([&] { file = encodeSheetPng(image); }, 3);
    const bool same = QImage::fromData(file, "png") == image;
    std::printf("%-24s %5d x %-5d %9d %9d %8.3f %8.3f %8.3f %6.1f%s\n",
                qPrintable(QFileInfo(name).fileName()), image.width(), image.height(), toolkit.size(),
                file.size(), theirs.processor, ours.processor, ours.clock, theirs.processor / ours.processor,
                same ? "" : " other pixels");
    return file.size() > toolkit.size() || !same;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    std::printf("%-24s %13s %9s %9s %8s %8s %8s %6s\n", "sheet", "size", "toolkit", "bytes", "toolkit", "cpu",
                "clock", "times");
    const QStringList names = QGuiApplication::arguments().mid(1);
    return static_cast<int>(std::count_if(names.begin(), names.end(), isWorse)) == 0 ? 0 : 1;
}
