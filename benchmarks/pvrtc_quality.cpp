// pvrtc_quality [FOLDER|IMAGE...]: quality and time of the PVRTC encoder beside those of a straightforward
// one, on sheets of 1024 x 1024 pixels: painted ones, and those of each folder's PNGs in three orders. Fails
// if a sheet gains less than 0.3 dB.

#include "PvrtcDecoder.h"
#include "PvrtcEncoder.h"
#include "PvrtcSheets.h"
#include "PvrtcYardstick.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QGuiApplication>
#include <QMap>

#include <cmath>
#include <cstdio>
#include <ctime>

namespace {

using Encoder = std::vector<std::uint8_t> (*)(const std::uint8_t*, int, int, int);

struct Outcome {
    double quality = 0; ///< peak signal to noise ratio of all four channels in dB
    double wallSeconds = 0;
    double processorSeconds = 0; ///< of all threads together
};

double peakSignalToNoise(const QImage& sheet, const std::vector<std::uint8_t>& data, int bits) {
    std::vector<std::uint8_t> decoded(static_cast<std::size_t>(sheet.sizeInBytes()));
    pvrtcDecode(data.data(), sheet.width(), sheet.height(), bits, decoded.data());
    double squares = 0;
    for (std::size_t index = 0; index < decoded.size(); ++index) {
        const double difference = int{decoded[index]} - int{sheet.constBits()[index]};
        squares += difference * difference;
    }
    return 10 * std::log10(255.0 * 255.0 * double(decoded.size()) / squares);
}

Outcome measure(Encoder encode, const QImage& sheet, int bits) {
    Outcome outcome;
    QElapsedTimer timer;
    timer.start();
    const std::clock_t before = std::clock();
    const std::vector<std::uint8_t> data = encode(sheet.constBits(), sheet.width(), sheet.height(), bits);
    outcome.processorSeconds = double(std::clock() - before) / CLOCKS_PER_SEC;
    outcome.wallSeconds = double(timer.nsecsElapsed()) / 1e9;
    outcome.quality = peakSignalToNoise(sheet, data, bits);
    return outcome;
}

QMap<QString, QImage> sheetsOf(const QStringList& paths) {
    QMap<QString, QImage> sheets;
    for (const QString& path : paths) {
        const QFileInfo info(path);
        if (!info.isDir())
            sheets[info.completeBaseName()] = QImage(path).convertToFormat(QImage::Format_RGBA8888);
        // How blocks cut through sprites depends on their order: one order alone tells little.
        for (const int skip : {0, 11, 37})
            if (info.isDir())
                sheets[QStringLiteral("%1/%2").arg(info.completeBaseName()).arg(skip)] =
                    sheetOfFolder(path, skip);
    }
    sheets[QStringLiteral("portraits-1")] = paintedSheet(1);
    sheets[QStringLiteral("portraits-2")] = paintedSheet(2);
    return sheets;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QMap<QString, QImage> sheets = sheetsOf(QGuiApplication::arguments().mid(1));
    std::printf("%-16s %4s %9s %9s %7s %12s %12s %12s\n", "sheet", "bits", "yardstick", "encoder", "gain",
                "yardstick s", "encoder wall", "encoder cpu");
    int failures = 0;
    for (auto sheet = sheets.begin(); sheet != sheets.end(); ++sheet)
        for (const int bits : {4, 2}) {
            const Outcome yardstick = measure(yardstickEncode, sheet.value(), bits);
            const Outcome encoder = measure(pvrtcEncode, sheet.value(), bits);
            const double gain = encoder.quality - yardstick.quality;
            std::printf("%-16s %4d %9.3f %9.3f %+7.3f %12.3f %12.3f %12.3f\n", qPrintable(sheet.key()), bits,
                        yardstick.quality, encoder.quality, gain, yardstick.wallSeconds, encoder.wallSeconds,
                        encoder.processorSeconds);
            failures += gain < 0.3 ? 1 : 0;
        }
    return failures == 0 ? 0 : 1;
}
