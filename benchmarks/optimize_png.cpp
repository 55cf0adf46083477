// optimize_png plain IMAGE FILE: the image as the toolkit writes PNG files, which is what the optimiser
// starts from. optimize_png LEVEL IMAGE FILE: the image through the PNG optimiser; prints the seconds that it
// took.

#include "QPNGOptimizer.h"

#include <QElapsedTimer>
#include <QGuiApplication>

#include <cstdio>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The optimiser's log would be part of the time.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 4) {
        std::fputs("usage: optimize_png plain|LEVEL IMAGE FILE\n", stderr);
        return 1;
    }
    const QImage image(arguments[2]);
    if (arguments[1] == QLatin1String("plain"))
        return image.save(arguments[3], "PNG") ? 0 : 1;

    const QPNGOptimizer optimizer(image, arguments[1].toInt());
    QElapsedTimer timer;
    timer.start();
    const QString fault = optimizer.save(arguments[3]);
    std::printf("%.3f\n", double(timer.nsecsElapsed()) / 1e9);
    if (!fault.isEmpty())
        std::fprintf(stderr, "%s\n", qPrintable(fault));
    return fault.isEmpty() ? 0 : 1;
}
