// From packed sprites to the sheet.

#include "BenchmarkPictures.h"
#include "BorderColorFiller.h"
#include "ImageExporter.h"
#include "RotateImage.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int sheetSide = 2048;
constexpr int spriteSide = 64;

PackedTexture sheet(bool rotated) {
    PackedTexture texture(0, 0);
    texture.setSize({sheetSide, sheetSide});
    const GCachedImage image(spriteLikeImage(spriteSide - 2, 8));
    for (int y = 0; y < sheetSide; y += spriteSide)
        for (int x = 0; x < sheetSide; x += spriteSide) {
            PackedSprite sprite(QStringLiteral("a.png"), x + y * sheetSide);
            sprite.setCachedImage(image);
            sprite.setSize(image.size());
            sprite.setPosition({x, y});
            sprite.setRotated(rotated);
            texture.add(sprite);
        }
    return texture;
}

void render(benchmark::State& state) {
    Settings settings;
    settings.setReduceBorderArtifacts(state.range(1) != 0);
    const PackedTexture texture = sheet(state.range(0) != 0);
    for (auto _ : state)
        benchmark::DoNotOptimize(ImageExporter::renderTexture(settings, texture));
    state.SetItemsProcessed(state.iterations() * sheetSide * sheetSide);
}
BENCHMARK(render)
    ->ArgsProduct({{0, 1}, {0, 1}})
    ->ArgNames({"rotated", "border"})
    ->Unit(benchmark::kMillisecond);

void fillSparseSheet(benchmark::State& state) {
    QImage image(sheetSide, sheetSide, QImage::Format_ARGB32);
    image.fill(0U);
    image.setPixel(sheetSide / 2, sheetSide / 2, 0xFF123456);
    for (auto _ : state)
        benchmark::DoNotOptimize(fillBorderColors(image, PixelFormatCode::RGBA8888));
    state.SetItemsProcessed(state.iterations() * sheetSide * sheetSide);
}
BENCHMARK(fillSparseSheet)->Unit(benchmark::kMillisecond);

void rotate(benchmark::State& state) {
    const QImage image = spriteLikeImage(1024, 32);
    for (auto _ : state)
        benchmark::DoNotOptimize(rotateClockwise(image));
    state.SetItemsProcessed(state.iterations() * image.width() * image.height());
}
BENCHMARK(rotate)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
