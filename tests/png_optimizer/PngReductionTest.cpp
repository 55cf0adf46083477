#include "PngFile.h"
#include "PngOptimization.h"

#include <QBuffer>

#include <gtest/gtest.h>

#include <functional>

using PngFile::Bytes;
using PngFile::Chunk;

namespace {

constexpr int gray = 0;
constexpr int rgb = 2;
constexpr int indexed = 3;
constexpr int grayAlpha = 4;
constexpr int rgba = 6;

constexpr std::uint32_t side = 64;

/// Rows of a square picture, made pixel by pixel.
Bytes rows(const std::function<Bytes(unsigned, unsigned)>& pixel) {
    Bytes all;
    for (unsigned y = 0; y < side; ++y)
        for (unsigned x = 0; x < side; ++x) {
            const Bytes bytes = pixel(x, y);
            all.insert(all.end(), bytes.begin(), bytes.end());
        }
    return all;
}

std::uint8_t byte(unsigned value) { return static_cast<std::uint8_t>(value); }

QByteArray bytes(std::initializer_list<int> values) {
    QByteArray array;
    for (const int value : values)
        array += static_cast<char>(value);
    return array;
}

/// A palette of so many colours, or greys.
QByteArray palette(int count, bool isGray = false) {
    QByteArray colors;
    for (int i = 0; i < count; ++i)
        colors += isGray ? bytes({i, i, i}) : bytes({i, 255 - i, 7});
    return colors;
}

using Change = std::function<void(PngOptions&)>;

/// What the optimiser says of a file, and what it makes of it, with a single trial.
std::pair<QString, QByteArray> tried(const QByteArray& file, const Change& change) {
    PngOptions options;
    options.optimLevel = 1;
    if (change)
        change(options);
    QBuffer output;
    EXPECT_TRUE(output.open(QIODevice::WriteOnly));
    const QString said = optimizePng(file, output, options);
    return {said, output.data()};
}

QByteArray optimized(const QByteArray& file, const Change& change = {}) {
    const auto [said, result] = tried(file, change);
    EXPECT_EQ(said, QString());
    EXPECT_EQ(PngFile::pixels(result), PngFile::pixels(file));
    EXPECT_FALSE(PngFile::pixels(file).empty());
    return result;
}

QString fault(const QByteArray& file, const Change& change = {}) { return tried(file, change).first; }

/// Colour type and bit depth, and the numbers of colours and alpha values.
std::vector<int> type(const QByteArray& file) {
    const PngFile::Header header = PngFile::header(file);
    return {header.colorType, header.bitDepth, PngFile::chunk(file, "PLTE").size() / 3,
            PngFile::chunk(file, "tRNS").size()};
}

using Type = std::vector<int>;

// Many colours, so that none of these becomes a palette picture.
Bytes manyGrays(unsigned x, unsigned y) { return Bytes(3, byte(x * 3 + y)); }
Bytes manyColors(unsigned x, unsigned y) { return {byte(x * 4), byte(y * 4), byte(x ^ y)}; }

Bytes with(Bytes pixel, unsigned alpha) {
    pixel.push_back(byte(alpha));
    return pixel;
}

/// Every sample as 16 bits with equal halves.
Bytes doubled(const Bytes& pixel) {
    Bytes all;
    for (const std::uint8_t sample : pixel)
        all.insert(all.end(), 2, sample);
    return all;
}

} // namespace

TEST(PngSamples, areReducedIfEveryPixelAllows) {
    const auto file = [](int depth, int colorType, const std::function<Bytes(unsigned, unsigned)>& pixel) {
        return PngFile::make({side, side, depth, colorType, 0}, rows(pixel));
    };
    const auto all = [](unsigned x, unsigned y) { return doubled(with(manyGrays(x, y), 255)); };
    EXPECT_EQ(type(optimized(file(16, rgba, all))), (Type{gray, 8, 0, 0}));
    EXPECT_EQ(type(optimized(file(8, rgba, [](auto x, auto y) { return with(manyColors(x, y), 255); }))),
              (Type{rgb, 8, 0, 0}));
    EXPECT_EQ(type(optimized(file(8, rgba, [](auto x, auto y) { return with(manyGrays(x, y), x); }))),
              (Type{grayAlpha, 8, 0, 0}));
    // The last pixel forbids one of them each time.
    const auto isLast = [](unsigned x, unsigned y) { return x == side - 1 && y == side - 1; };
    const auto except = [&](std::size_t place, int change) {
        return file(16, rgba, [=](unsigned x, unsigned y) {
            Bytes pixel = all(x, y);
            if (isLast(x, y))
                pixel[place] = byte(pixel[place] + static_cast<unsigned>(change));
            return pixel;
        });
    };
    EXPECT_EQ(type(optimized(except(3, 1))), (Type{rgb, 16, 0, 0})) << "a green that is no grey, of 16 bits";
    EXPECT_EQ(type(optimized(except(7, -1))), (Type{grayAlpha, 16, 0, 0})) << "alpha of 65,534";
}

TEST(PngSamples, areReducedWithWhatDependsOnThem) {
    const auto file = [](const std::function<Bytes(unsigned, unsigned)>& pixel, int colorType,
                         const std::vector<Chunk>& before) {
        return PngFile::make({side, side, 16, colorType, 0}, rows(pixel), before);
    };
    const auto grays = [](unsigned x, unsigned y) { return doubled(manyGrays(x, y)); };
    const auto opaque = [](unsigned x, unsigned y) { return doubled(with(manyGrays(x, y), 255)); };
    QByteArray result =
        optimized(file(opaque, rgba, {{"sBIT", bytes({9, 12, 16, 3})}, {"bKGD", bytes({5, 5, 5, 5, 5, 5})}}));
    EXPECT_EQ(type(result), (Type{gray, 8, 0, 0}));
    EXPECT_EQ(PngFile::chunk(result, "sBIT"), bytes({8}));
    EXPECT_EQ(PngFile::chunk(result, "bKGD"), bytes({0, 5}));

    result = optimized(file(opaque, rgba, {{"bKGD", bytes({0, 5, 0, 5, 0, 5})}}));
    EXPECT_EQ(type(result), (Type{gray, 16, 0, 0})) << "a background of 16 bits";
    result = optimized(file(opaque, rgba, {{"bKGD", bytes({5, 5, 6, 6, 5, 5})}}));
    EXPECT_EQ(type(result), (Type{indexed, 8, 254, 0})) << "253 greys and a background of a colour";

    result = optimized(file(grays, rgb, {{"tRNS", bytes({9, 9, 9, 9, 9, 9})}}));
    EXPECT_EQ(type(result), (Type{gray, 8, 0, 2}));
    EXPECT_EQ(PngFile::chunk(result, "tRNS"), bytes({0, 9}));
    result = optimized(file(grays, rgb, {{"tRNS", bytes({9, 9, 8, 8, 9, 9})}}));
    EXPECT_EQ(type(result), (Type{gray, 8, 0, 0})) << "a colour that no pixel has";

    // A profile of colours would be lost on a grey picture.
    result = optimized(file(grays, rgb, {{"iCCP", QByteArrayLiteral("a\0\0x")}}));
    EXPECT_EQ(PngFile::header(result).colorType, indexed);
    EXPECT_EQ(PngFile::chunk(result, "iCCP"), QByteArrayLiteral("a\0\0x"));
    // So would a suggested palette.
    result = optimized(PngFile::make({side, side, 8, rgb, 0}, rows(manyGrays), {{"PLTE", palette(3)}}));
    EXPECT_EQ(type(result), (Type{gray, 8, 0, 0}));
    result = optimized(PngFile::make({side, side, 8, rgb, 0}, rows(manyColors), {{"PLTE", palette(3)}}));
    EXPECT_EQ(type(result), (Type{rgb, 8, 3, 0}));
}

TEST(PngPalette, takesTheDepthOfItsColors) {
    for (const auto& [colors, depth] : std::vector<std::pair<unsigned, int>>{
             {1, 1}, {2, 1}, {3, 2}, {4, 2}, {5, 4}, {16, 4}, {17, 8}, {256, 8}}) {
        const auto pixel = [count = colors](unsigned x, unsigned y) {
            return Bytes{byte((x * side + y) % count), 9, 3};
        };
        const auto fully = [&](unsigned x, unsigned y) { return with(pixel(x, y), 255); };
        const int count = static_cast<int>(colors);
        EXPECT_EQ(type(optimized(PngFile::make({side, side, 8, rgb, 0}, rows(pixel)))),
                  (Type{indexed, depth, count, 0}));
        EXPECT_EQ(type(optimized(PngFile::make({side, side, 8, rgba, 0}, rows(fully)))),
                  (Type{indexed, depth, count, 0}));
        // Grey of 8 bits gains nothing from a palette of 8 bits.
        const auto level = [count = colors](unsigned x, unsigned y) {
            return Bytes{byte((x * side + y) % count)};
        };
        EXPECT_EQ(type(optimized(PngFile::make({side, side, 8, gray, 0}, rows(level)))),
                  (depth < 8 ? Type{indexed, depth, count, 0} : Type{gray, 8, 0, 0}));
    }
    const auto tooMany = [](unsigned x, unsigned y) {
        const unsigned number = (x * side + y) % 257;
        return Bytes{byte(number), byte(number / 256), 3};
    };
    EXPECT_EQ(type(optimized(PngFile::make({side, side, 8, rgb, 0}, rows(tooMany)))), (Type{rgb, 8, 0, 0}));
}

TEST(PngPalette, isSortedByAlphaFirst) {
    const std::vector<Bytes> colors = {{9, 1, 1, 255}, {0, 2, 2, 128}, {5, 0, 0, 0},
                                       {4, 9, 9, 0},   {1, 1, 1, 255}, {0, 2, 1, 128}};
    const auto pixel = [&](unsigned x, unsigned y) { return colors[(x + y) % colors.size()]; };
    const QByteArray result =
        optimized(PngFile::make({side, side, 8, rgba, 0}, rows(pixel),
                                {{"sBIT", bytes({5, 6, 7, 8})}, {"bKGD", bytes({0, 3, 0, 3, 0, 3})}}));
    EXPECT_EQ(PngFile::chunk(result, "PLTE"),
              bytes({4, 9, 9, 5, 0, 0, 0, 2, 1, 0, 2, 2, 1, 1, 1, 3, 3, 3, 9, 1, 1}));
    EXPECT_EQ(PngFile::chunk(result, "tRNS"), bytes({0, 0, 128, 128}));
    EXPECT_EQ(PngFile::chunk(result, "bKGD"), bytes({5})) << "the background is a colour too";
    EXPECT_EQ(PngFile::chunk(result, "sBIT"), bytes({5, 6, 7}));
    // The colour that doesn't show becomes an entry that doesn't.
    const auto opaque = [](unsigned x, unsigned) { return Bytes{byte(x % 3)}; };
    const QByteArray keyed =
        optimized(PngFile::make({side, side, 8, gray, 0}, rows(opaque), {{"tRNS", bytes({0, 2})}}));
    EXPECT_EQ(PngFile::chunk(keyed, "PLTE"), bytes({2, 2, 2, 0, 0, 0, 1, 1, 1}));
    EXPECT_EQ(PngFile::chunk(keyed, "tRNS"), bytes({0}));
}

TEST(PngPalette, isMadeOnlyIfItPays) {
    // Two colours: 48 bits of palette, 23 bits saved a pixel.
    const auto file = [](std::uint32_t width, int colors) {
        Bytes row;
        for (std::uint32_t x = 0; x < width; ++x) {
            const Bytes pixel{byte(x % static_cast<unsigned>(colors)), 9, 3};
            row.insert(row.end(), pixel.begin(), pixel.end());
        }
        return PngFile::make({width, 1, 8, rgb, 0}, row);
    };
    EXPECT_EQ(PngFile::header(optimized(file(2, 2))).colorType, rgb);
    EXPECT_EQ(PngFile::header(optimized(file(3, 2))).colorType, indexed);
    // Just as much as is saved: 5 colours, 120 bits, 20 a pixel.
    EXPECT_EQ(PngFile::header(optimized(file(6, 5))).colorType, rgb);
    EXPECT_EQ(PngFile::header(optimized(file(7, 5))).colorType, indexed);
}

TEST(PngPalette, losesEntriesThatNoPixelUses) {
    const auto index = [](unsigned x, unsigned y) { return Bytes{Bytes{0, 7, 9, 18}[(x * y) % 4]}; };
    const QByteArray alphas = bytes({255, 0, 0, 0, 0, 0, 0, 3, 255, 200, 255, 255});
    const QByteArray histogram = QByteArray(19, '\1') + QByteArray(21, '\2');
    const QByteArray result = optimized(
        PngFile::make({side, side, 8, indexed, 0}, rows(index),
                      {{"PLTE", palette(20)}, {"tRNS", alphas}, {"bKGD", bytes({7})}, {"hIST", histogram}}));
    EXPECT_EQ(type(result), (Type{indexed, 2, 4, 3}));
    EXPECT_EQ(PngFile::chunk(result, "PLTE"), bytes({0, 255, 7, 7, 248, 7, 9, 246, 7, 18, 237, 7}));
    EXPECT_EQ(PngFile::chunk(result, "tRNS"), bytes({255, 3, 200}));
    EXPECT_EQ(PngFile::chunk(result, "bKGD"), bytes({1}));
    EXPECT_EQ(PngFile::chunk(result, "hIST"), bytes({1, 1, 1, 1, 1, 2, 2, 2}));
    // An entry for the background alone is used as well.
    const auto two = [](unsigned x, unsigned) { return Bytes{byte(x % 2)}; };
    EXPECT_EQ(type(optimized(PngFile::make({side, side, 8, indexed, 0}, rows(two),
                                           {{"PLTE", palette(20)}, {"bKGD", bytes({6})}}))),
              (Type{indexed, 2, 3, 0}));
    // Packed indices: four of two bits in a byte.
    const PngFile::Bytes packed(side * side / 4, 0b01110111);
    EXPECT_EQ(type(optimized(PngFile::make({side, side, 2, indexed, 0}, packed, {{"PLTE", palette(4)}}))),
              (Type{indexed, 1, 2, 0}));
}

TEST(PngPalette, ofGraysBecomesGrayIfItsIndexTakesAByte) {
    const auto file = [](unsigned colors, const std::vector<Chunk>& more) {
        std::vector<Chunk> before = {{"PLTE", palette(256, true)}};
        before.insert(before.end(), more.begin(), more.end());
        return PngFile::make(
            {side, side, 8, indexed, 0},
            rows([=](unsigned x, unsigned y) { return Bytes{byte((x * side + y) % colors)}; }), before);
    };
    EXPECT_EQ(type(optimized(file(16, {}))), (Type{indexed, 4, 16, 0}));
    EXPECT_EQ(type(optimized(file(17, {}))), (Type{gray, 8, 0, 0}));
    QByteArray result = optimized(file(200, {{"tRNS", bytes({255, 0})},
                                             {"bKGD", bytes({4})},
                                             {"sBIT", bytes({3, 5, 4})},
                                             {"hIST", QByteArray(512, '\0')}}));
    EXPECT_EQ(type(result), (Type{gray, 8, 0, 2}));
    EXPECT_EQ(PngFile::chunk(result, "tRNS"), bytes({0, 1}));
    EXPECT_EQ(PngFile::chunk(result, "bKGD"), bytes({0, 4}));
    EXPECT_EQ(PngFile::chunk(result, "sBIT"), bytes({5}));
    EXPECT_TRUE(PngFile::chunk(result, "hIST").isNull());
    EXPECT_EQ(type(optimized(file(200, {{"tRNS", bytes({128})}}))), (Type{indexed, 8, 200, 1}))
        << "half transparent";
    EXPECT_EQ(type(optimized(file(200, {{"tRNS", bytes({0, 0})}}))), (Type{indexed, 8, 200, 2}))
        << "two transparent greys";
    // One grey that shows and one that doesn't can't be told apart.
    QByteArray twice = palette(256, true);
    twice.replace(0, 3, bytes({9, 9, 9}));
    result = optimized(PngFile::make({side, side, 8, indexed, 0}, rows([](unsigned x, unsigned y) {
                                         return Bytes{byte((x * side + y) % 200)};
                                     }),
                                     {{"PLTE", twice}, {"tRNS", bytes({0})}}));
    EXPECT_EQ(type(result), (Type{indexed, 8, 200, 1}));
}

TEST(PngReductions, canBeForbiddenEach) {
    const QByteArray grays = PngFile::make(
        {side, side, 16, rgba, 0}, rows([](auto x, auto y) { return doubled(with(manyGrays(x, y), 255)); }));
    EXPECT_EQ(type(optimized(grays, [](PngOptions& o) { o.noBitDepthReduction = true; })),
              (Type{gray, 16, 0, 0}));
    EXPECT_EQ(type(optimized(grays, [](PngOptions& o) { o.noColorTypeReduction = true; })),
              (Type{rgba, 8, 0, 0}));
    EXPECT_EQ(type(optimized(grays, [](PngOptions& o) { o.noPaletteReduction = true; })),
              (Type{gray, 8, 0, 0}));
    const QByteArray few = PngFile::make({side, side, 8, rgb, 0}, rows([](auto x, auto) {
                                             return Bytes{byte(x % 3), 9, 9};
                                         }));
    EXPECT_EQ(type(optimized(few, [](PngOptions& o) { o.noBitDepthReduction = true; })),
              (Type{indexed, 8, 3, 0}));
    EXPECT_EQ(type(optimized(few, [](PngOptions& o) { o.noColorTypeReduction = true; })),
              (Type{rgb, 8, 0, 0}));
    const QByteArray entries =
        PngFile::make({side, side, 8, indexed, 0}, rows([](auto x, auto) { return Bytes{byte(x % 3)}; }),
                      {{"PLTE", palette(40)}});
    EXPECT_EQ(type(optimized(entries, [](PngOptions& o) { o.noPaletteReduction = true; })),
              (Type{indexed, 8, 40, 0}));
    EXPECT_EQ(type(optimized(entries, [](PngOptions& o) { o.noBitDepthReduction = true; })),
              (Type{indexed, 8, 3, 0}));
}

TEST(PngReductions, keepWhatElseIsInTheFile) {
    const std::vector<Chunk> before = {{"gAMA", bytes({0, 0, 177, 143})},
                                       {"pHYs", bytes({0, 0, 11, 19, 0, 0, 11, 19, 1})},
                                       {"tEXt", QByteArrayLiteral("A\0b")},
                                       {"abCd", "xyz"}};
    const std::vector<Chunk> after = {{"tEXt", QByteArrayLiteral("C\0d")}, {"abCd", "1"}};
    const QByteArray result = optimized(PngFile::make({side, side, 8, rgb, 0}, rows([](auto x, auto) {
                                                          return Bytes{byte(x % 3), 9, 9};
                                                      }),
                                                      before, after));
    std::vector<QByteArray> types;
    for (const Chunk& chunk : PngFile::chunks(result))
        types.push_back(chunk.first);
    EXPECT_EQ(types, (std::vector<QByteArray>{"IHDR", "gAMA", "pHYs", "tEXt", "abCd", "PLTE", "IDAT", "tEXt",
                                              "abCd", "IEND"}));
    EXPECT_EQ(PngFile::chunk(result, "pHYs"), before[1].second);
}

TEST(PngReductions, leaveSignedAndAnimatedPicturesAlone) {
    const Bytes pixels = rows([](auto x, auto) { return Bytes{byte(x % 3), 9, 9}; });
    const QByteArray signedFile =
        PngFile::make({side, side, 8, rgb, 0}, pixels, {{"dSIG", "abc"}}, {{"dSIG", "abc"}});
    const QByteArray result = optimized(signedFile, [](PngOptions& o) { o.optimLevel = 2; });
    EXPECT_EQ(PngFile::header(result).colorType, rgb);
    EXPECT_TRUE(PngFile::chunk(result, "dSIG").isNull()) << "it would be void";
    EXPECT_EQ(fault(signedFile, [](PngOptions& o) { o.force = false; }),
              QStringLiteral("Can't optimize digitally-signed files"));
    const QByteArray animated =
        PngFile::make({side, side, 8, rgb, 0}, pixels, {{"acTL", bytes({0, 0, 0, 1, 0, 0, 0, 0})}});
    const QByteArray same = optimized(animated, [](PngOptions& o) { o.interlace = 1; });
    EXPECT_EQ(PngFile::header(same).colorType, rgb);
    EXPECT_EQ(PngFile::header(same).interlace, 0);
    EXPECT_EQ(PngFile::chunk(same, "acTL").size(), 8);
}

TEST(PngReductions, repairSmallFaultsOnly) {
    const Bytes pixels = rows([](auto x, auto) { return Bytes{byte(x % 20)}; });
    const QByteArray alphas(30, '\1');
    const QByteArray tooLong =
        PngFile::make({side, side, 8, indexed, 0}, pixels, {{"PLTE", palette(20)}, {"tRNS", alphas}});
    const QByteArray tooShort = PngFile::make({side, side, 8, indexed, 0}, pixels, {{"PLTE", palette(10)}});
    QBuffer output;
    ASSERT_TRUE(output.open(QIODevice::WriteOnly));
    PngOptions options;
    EXPECT_EQ(optimizePng(tooLong, output, options), QString());
    EXPECT_EQ(type(output.data()), (Type{indexed, 8, 20, 20}));
    output.seek(0);
    output.buffer().clear();
    EXPECT_EQ(optimizePng(tooShort, output, options), QString());
    EXPECT_EQ(type(output.data()), (Type{indexed, 8, 20, 0}));
    const auto strict = [](PngOptions& o) { o.fix = false; };
    const QString refused = QStringLiteral("Previous error(s) not fixed");
    EXPECT_EQ(fault(tooLong, strict), refused);
    EXPECT_EQ(fault(tooShort, strict), refused);
    const auto with = [&](const Chunk& chunk) {
        return PngFile::make({side, side, 8, rgb, 0}, rows(manyColors), {chunk});
    };
    for (const Chunk& chunk : std::vector<Chunk>{
             {"bKGD", "12"}, {"tRNS", "1"}, {"sBIT", "1"}, {"tRNS", bytes({1, 0, 0, 0, 0, 0})}})
        EXPECT_EQ(fault(with(chunk)), refused) << chunk.first.constData();
    QByteArray damaged = with({"tEXt", QByteArrayLiteral("A\0b")});
    damaged.replace(damaged.indexOf("tEXt") + 4, 1, "B");
    EXPECT_EQ(fault(damaged), refused);
    const QString unreadable = QStringLiteral("Can't read the input file or unexpected end of file");
    EXPECT_EQ(fault(damaged.left(damaged.size() - 20)), unreadable);
    EXPECT_EQ(fault("no picture"), unreadable);
    EXPECT_EQ(fault({}), unreadable);
    QByteArray broken = with({"tEXt", QByteArrayLiteral("A\0b")});
    broken.replace(broken.indexOf("IDAT") + 20, 4, "xxxx");
    EXPECT_NE(fault(broken), QString());
}
