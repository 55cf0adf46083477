// The chain from a source image to the image on the sheet, and its filters.

#include "BenchmarkPictures.h"
#include "ScaleImage.h"
#include "Settings.h"
#include "Sprite.h"
#include "SpritePreparation.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int side = 256;

void scale(benchmark::State& state) {
    const QImage image = spriteLikeImage(side, 16);
    for (auto _ : state)
        benchmark::DoNotOptimize(scaleImage(image, 0.5, static_cast<ScaleMode>(state.range(0))));
    state.SetItemsProcessed(state.iterations() * side * side);
}
BENCHMARK(scale)->DenseRange(0, 6)->ArgName("mode")->Unit(benchmark::kMicrosecond);

void trim(benchmark::State& state) {
    const QImage image = spriteLikeImage(side, 64);
    for (auto _ : state)
        benchmark::DoNotOptimize(SpritePreparation::trimTransparent(image, 1, 0, 1, 1));
    state.SetItemsProcessed(state.iterations() * side * side);
}
BENCHMARK(trim)->Unit(benchmark::kMicrosecond);

void update(benchmark::State& state) {
    Settings settings;
    settings.globalSpriteSettings()->setExtrude(2);
    settings.globalSpriteSettings()->setHeuristicMask(state.range(0) != 0);
    settings.setShapeDebug(state.range(0) != 0);
    const GCachedImage source(spriteLikeImage(side, 16));
    Sprite sprite(QStringLiteral("a.png"), FileData());
    for (auto _ : state) {
        sprite.setImage(source);
        sprite.update(settings);
    }
    state.SetItemsProcessed(state.iterations() * side * side);
}
BENCHMARK(update)->Arg(0)->Arg(1)->ArgName("mask and frame")->Unit(benchmark::kMicrosecond);

void updateWithoutChange(benchmark::State& state) {
    Settings settings;
    Sprite sprite(QStringLiteral("a.png"), FileData());
    sprite.setImage(GCachedImage(spriteLikeImage(side, 16)));
    for (auto _ : state)
        sprite.update(settings);
}
BENCHMARK(updateWithoutChange);

} // namespace

BENCHMARK_MAIN();
