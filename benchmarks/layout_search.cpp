// layout_search METHOD COUNT CONSTRAINT MAXIMUM: packs so many rectangles like those of an icon set and
// prints the seconds of processor and clock, the sheet, the number of unplaced sprites, that of the stored
// attempts, the bytes that the attempts take per sprite, and a hash of the layout. Methods: plain (contact
// scores look at every placed rectangle), edges (plain, with edge maps), search; attempt makes one attempt,
// with all heuristics, in a tight square. Constraints: 0 powers of two, 1 any size.

#include "AttemptCache.h"
#include "IconSizes.h"
#include "PlainLayout.h"
#include "TestSprites.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <cmath>
#include <cstdio>
#include <ctime>
#include <malloc.h>

namespace {

double processorSeconds() { return double(std::clock()) / CLOCKS_PER_SEC; }

struct Outcome {
    PackedResult result;
    int attempts = 0;
};

Outcome plain(const SizeSearchInput& input, PlainMaxRects::Contact contact) {
    const PlainLayout layout(input, contact);
    return {layout.result, static_cast<int>(layout.attempts.size())};
}

Outcome search(const SizeSearchInput& input, AttemptCache& cache) {
    SizeSearch sizeSearch(input,
                          {[&cache](const PackerParameters& parameters) { return cache.pack(parameters); },
                           [] { return false; }, [](int, const QString&) {}});
    return {sizeSearch.run(), cache.size()};
}

/// In a square that the sizes fill by 95 of 100.
Outcome attempt(const SizeSearchInput& input, AttemptCache& cache) {
    PackerParameters parameters;
    parameters.setSprites(input.sprites);
    parameters.setAllowRotation(input.allowRotation);
    parameters.setSizeConstraints(input.sizeConstraints);
    parameters.setAlgorithmSettings(input.algorithmSettings);
    const double area = double(parameters.sharedShapes()->area());
    const int side = static_cast<int>(std::sqrt(area / 0.95));
    parameters.setSize({side, side});
    return {cache.pack(parameters), 1};
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    if (argc != 5) {
        std::fputs("usage: layout_search plain|edges|search|attempt COUNT CONSTRAINT MAXIMUM\n", stderr);
        return 1;
    }
    const QByteArray method = argv[1];
    const int count = std::atoi(argv[2]);
    AlgorithmSettings settings;
    settings.setFreeSizeMode(AlgorithmSettings::AlgorithmFreeSizeMode::Best);
    SizeSearchInput input;
    input.algorithmSettings = &settings;
    input.sizeConstraints = std::atoi(argv[3]);
    input.maxSize = QSize(std::atoi(argv[4]), std::atoi(argv[4]));
    input.allowRotation = true;
    input.borderPadding = 2;
    input.shapePadding = 2;
    input.sprites = makeSprites(iconSizes(count));

    const size_t bytesBefore = mallinfo2().uordblks;
    AttemptCache cache;
    QElapsedTimer timer;
    timer.start();
    const double start = processorSeconds();
    const Outcome outcome = method == "plain"    ? plain(input, PlainMaxRects::Contact::AllPlaced)
                            : method == "edges"  ? plain(input, PlainMaxRects::Contact::EdgeMaps)
                            : method == "search" ? search(input, cache)
                                                 : attempt(input, cache);
    const double processor = processorSeconds() - start;
    const double clock = double(timer.nsecsElapsed()) / 1e9;
    const double bytes = double(mallinfo2().uordblks - bytesBefore) / count / outcome.attempts;
    const PackedTexture sheet = outcome.result.textures().first();
    std::printf("%.4f %.4f %dx%d %d %d %.0f %08x\n", processor, clock, sheet.width(), sheet.height(),
                outcome.result.unplaced().size(), outcome.attempts, bytes,
                qHash(QByteArray::fromStdString(describe(outcome.result))));
    return 0;
}
