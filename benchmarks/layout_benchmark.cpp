// One run of the packer by each heuristic, on rectangles like those of an icon set. The whole size search is
// what benchmarks/layout measures.

#include "IconSizes.h"
#include "MaxRectsBin.h"

#include <benchmark/benchmark.h>

#include <cmath>

namespace {

/// A square that the sizes fill by 95 of 100.
int tightSide(const std::vector<QSize>& sizes) {
    double area = 0;
    for (QSize size : sizes)
        area += double(size.width()) * size.height();
    return static_cast<int>(std::sqrt(area / 0.95));
}

void attempt(benchmark::State& state) {
    const std::vector<QSize> sizes = iconSizes(static_cast<int>(state.range(0)));
    const auto heuristic = static_cast<MaxRectsBin::Heuristic>(state.range(1));
    const int side = tightSide(sizes);
    MaxRectsBin bin(side, side, true);
    std::vector<PackRect> placed;
    for (auto _ : state) {
        bin.insert(sizes, placed, heuristic);
        benchmark::DoNotOptimize(placed.data());
    }
    state.counters["placed"] = static_cast<double>(placed.size());
}

} // namespace

BENCHMARK(attempt)
    ->ArgNames({"sprites", "heuristic"})
    ->ArgsProduct({{50, 200, 800, 2000, 4000, 10000}, {1, 2, 3, 4, 5}})
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
