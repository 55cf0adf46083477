// ETC1 by kind of sheet: the encoder on one core and on all, the plain search that it has to be faster than,
// and the decoder.

#include "BenchmarkPictures.h"
#include "Etc1Decoder.h"
#include "Etc1Encoder.h"
#include "PlainEtc1.h"

#include <QPainter>
#include <QThreadPool>

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr int side = 1024;

/// Sprites of several sizes on a transparent ground, which is black without its alpha.
QImage sprites() {
    QImage sheet(side, side, QImage::Format_RGB888);
    sheet.fill(Qt::black);
    QPainter painter(&sheet);
    for (int y = 0; y < side; y += 128)
        for (int x = 0; x < side; x += 128)
            painter.drawImage(x, y, spriteLikeImage(40 + (x + 3 * y) / 128 % 8 * 12, 4));
    return sheet;
}

/// Colours that run into each other, with the grain of a brush.
QImage painting() {
    std::mt19937 random(1);
    QImage sheet(side, side, QImage::Format_RGB888);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const int grain = static_cast<int>(random() % 8);
            const int hue = (x * x / 700 + y) % 360;
            sheet.setPixelColor(x, y, QColor::fromHsv(hue, 120 + 10 * grain, 90 + (x + y) / 16 + grain));
        }
    return sheet;
}

/// Few colours, in squares of 3 x 3 pixels.
QImage pixelArt() {
    std::mt19937 random(2);
    std::vector<QRgb> squares(side * side);
    for (QRgb& square : squares)
        square = QColor::fromHsv(random() % 12 * 30, 200, random() % 4 * 80).rgb();
    QImage sheet(side, side, QImage::Format_RGB888);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            sheet.setPixel(x, y, squares[y / 3 * side + x / 3]);
    return sheet;
}

QImage noise() {
    std::mt19937 random(3);
    QImage sheet(side, side, QImage::Format_RGB888);
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
            sheet.setPixel(x, y, random());
    return sheet;
}

const QImage& sheet(benchmark::State& state) {
    static const std::vector<QImage> sheets = {sprites(), painting(), pixelArt(), noise()};
    constexpr std::array<const char*, 4> names = {"sprites", "painting", "pixel art", "noise"};
    const auto kind = static_cast<std::size_t>(state.range(0));
    state.SetLabel(names[kind]);
    state.SetItemsProcessed(state.max_iterations * side * side);
    return sheets[kind];
}

void encode(benchmark::State& state) {
    const QImage& image = sheet(state);
    std::vector<std::uint8_t> blocks(etc1DataSize(side, side));
    QThreadPool& pool = *QThreadPool::globalInstance();
    const int cores = pool.maxThreadCount();
    if (state.range(1) == 0)
        pool.setMaxThreadCount(1);
    for (auto _ : state)
        etc1EncodeImage(image.constBits(), side, side, 3, image.bytesPerLine(), blocks.data());
    pool.setMaxThreadCount(cores);
}
BENCHMARK(encode)
    ->ArgsProduct({{0, 1, 2, 3}, {0, 1}})
    ->ArgNames({"sheet", "cores"})
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

void encodePlainly(benchmark::State& state) {
    const QImage& image = sheet(state);
    for (auto _ : state)
        benchmark::DoNotOptimize(plainEtc1Image(image.constBits(), side, side));
}
BENCHMARK(encodePlainly)->DenseRange(0, 3)->ArgName("sheet")->Unit(benchmark::kMillisecond);

void decode(benchmark::State& state) {
    const QImage& image = sheet(state);
    std::vector<std::uint8_t> blocks(etc1DataSize(side, side));
    etc1EncodeImage(image.constBits(), side, side, 3, image.bytesPerLine(), blocks.data());
    QImage result(side, side, QImage::Format_RGB888);
    for (auto _ : state)
        etc1DecodeImage(blocks.data(), side, side, result.bits(), result.bytesPerLine());
}
BENCHMARK(decode)->DenseRange(0, 3)->ArgName("sheet")->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
