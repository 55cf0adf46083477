// Colour reduction by dither type, with and without premultiplication.

#include "BenchmarkPictures.h"
#include "ColorReduction.h"

#include <benchmark/benchmark.h>

namespace {

void reduce(benchmark::State& state) {
    constexpr int side = 512;
    const QImage image = spriteLikeImage(side, 32);
    const auto dither = static_cast<SettingsBase::DitherType>(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(
            reduceColors(image, SettingsBase::OutputFormat::RGBA4444, QColor(), dither, state.range(1) != 0));
    state.SetItemsProcessed(state.iterations() * side * side);
}
BENCHMARK(reduce)
    ->ArgsProduct({{0, 1, 2, 3, 4, 5}, {0, 1}})
    ->ArgNames({"dither", "premultiply"})
    ->Unit(benchmark::kMillisecond);

void flatten(benchmark::State& state) {
    constexpr int side = 512;
    const QImage image = spriteLikeImage(side, 32);
    for (auto _ : state)
        benchmark::DoNotOptimize(reduceColors(image, SettingsBase::OutputFormat::RGB888, QColor(Qt::white),
                                              SettingsBase::DitherType::Linear, false));
    state.SetItemsProcessed(state.iterations() * side * side);
}
BENCHMARK(flatten)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
