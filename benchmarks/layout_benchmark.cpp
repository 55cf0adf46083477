// One packing attempt and the whole size search on rectangles like those of icon sets.

#include "AlgorithmMaxRects.h"
#include "AttemptCache.h"
#include "MaxRectsBin.h"
#include "Settings.h"
#include "SizeSearch.h"
#include "Sprite.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>

namespace {

/// Padded sizes of squares as icon sets have them, each trimmed by a random amount.
std::vector<QSize> iconSizes(int count) {
    constexpr int sides[] = {16, 22, 24, 32, 48, 64, 128, 256};
    constexpr int shapePadding = 2;
    std::mt19937 random(20130214);
    const auto below = [&random](int bound) {
        return static_cast<int>(random() % static_cast<unsigned>(bound));
    };
    std::vector<QSize> sizes;
    for (int i = 0; i < count; ++i) {
        const int side = sides[below(8)];
        sizes.emplace_back(side - below(side / 3) + shapePadding, side - below(side / 3) + shapePadding);
    }
    return sizes;
}

/// A square that the sizes fill by about nine tenths.
int tightSide(const std::vector<QSize>& sizes) {
    double area = 0;
    for (QSize size : sizes)
        area += size.width() * size.height();
    return static_cast<int>(std::sqrt(area / 0.9));
}

QList<Sprite> iconSprites(int count) {
    Settings settings;
    settings.setShapePadding(0);
    settings.globalSpriteSettings()->setTrimMode(SpriteSettings::TrimMode::None);
    QList<Sprite> sprites;
    for (QSize size : iconSizes(count)) {
        QImage image(size, QImage::Format_ARGB32);
        image.fill(0xff000000 + static_cast<uint>(sprites.size()));
        const QString name = QStringLiteral("icon%1").arg(sprites.size(), 4, 10, QLatin1Char('0'));
        sprites.append(Sprite(name, FileData(name)));
        sprites.last().setImage(GCachedImage(image));
        sprites.last().update(settings);
    }
    return sprites;
}

void attempt(benchmark::State& state) {
    const std::vector<QSize> sizes = iconSizes(static_cast<int>(state.range(0)));
    const auto heuristic = static_cast<MaxRectsBin::Heuristic>(state.range(1));
    const int side = tightSide(sizes);
    MaxRectsBin bin(side, side, true);
    std::vector<PackRect> placed;
    for (auto _ : state) {
        bin.init(side, side, true);
        bin.insert(sizes, placed, heuristic);
        benchmark::DoNotOptimize(placed.data());
    }
    state.counters["placed"] = static_cast<double>(placed.size());
}

void search(benchmark::State& state) {
    const QList<Sprite> sprites = iconSprites(static_cast<int>(state.range(0)));
    AlgorithmSettings settings;
    SizeSearchInput input;
    input.maxSize = {8192, 8192};
    input.sizeConstraints = static_cast<int>(state.range(1));
    input.allowRotation = true;
    input.algorithmSettings = &settings;
    input.sprites = sprites;
    int attempts = 0;
    qint64 area = 0;
    for (auto _ : state) {
        AttemptCache cache;
        SizeSearch sizeSearch(
            input, {[&cache](const PackerParameters& parameters) { return cache.pack(parameters); },
                    [] { return false; }, [](int, const QString&) {}});
        area = sizeSearch.run().totalArea();
        attempts = cache.size();
    }
    state.counters["attempts"] = attempts;
    state.counters["area"] = static_cast<double>(area);
}

} // namespace

BENCHMARK(attempt)
    ->ArgNames({"sprites", "heuristic"})
    ->ArgsProduct({{50, 200, 500, 1000, 2000}, {1, 2, 3, 4, 5}})
    ->Unit(benchmark::kMillisecond);

// Constraints: 0 powers of two, 1 any size.
BENCHMARK(search)
    ->ArgNames({"sprites", "constraint"})
    ->ArgsProduct({{50, 200, 500, 1000, 2000}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
