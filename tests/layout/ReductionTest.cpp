#include "ColorReduction.h"
#include "Error.h"
#include "TestPictures.h"

#include <array>
#include <cstdlib>
#include <vector>

namespace {

using Code = PixelFormatCode;
using Format = SettingsBase::OutputFormat;
using Dither = SettingsBase::DitherType;

/// All levels of so many bits, each its own bit pattern written again and again until 8 bits are full.
std::vector<int> levels(int bits) {
    std::vector<int> result;
    for (int k = 0; k < 1 << bits; ++k)
        result.push_back(
            QStringLiteral("%1").arg(k, bits, 2, QLatin1Char('0')).repeated(8).left(8).toInt(nullptr, 2));
    return result;
}

int nearestLevel(int value, int bits) {
    int best = 0;
    for (const int level : levels(bits))
        if (std::abs(level - value) < std::abs(best - value))
            best = level;
    return best;
}

/// Where a table changes its value.
std::vector<int> steps(const ReductionTable& table) {
    std::vector<int> result;
    for (int value = 1; value < 256; ++value)
        if (table[value] != table[value - 1])
            result.push_back(value);
    return result;
}

int refusals(QRgb (*rule)(QRgb, Code)) {
    int refused = 0;
    for (int code = -1; code <= 14; ++code) {
        try {
            rule(0x80123456, static_cast<Code>(code));
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), 16);
            EXPECT_EQ(error.message(), QStringLiteral("Invalid pixel format for quant_nn"));
            refused |= 1 << (code + 1);
        }
    }
    return refused;
}

QRgb floatRule(QRgb pixel, Code code) {
    return quantizeFloatPixel(qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel), code);
}

struct PlainPixel {
    float r, g, b, a;
};

PlainPixel plain(QRgb p) { return {float(qRed(p)), float(qGreen(p)), float(qBlue(p)), float(qAlpha(p))}; }

/// The rule in words: a whole image of floats, and each error handed on as it arises.
QImage plainDiffusion(int method, const QImage& image, Code code, bool alphaFlag, bool premultiply) {
    const int w = image.width();
    const int h = image.height();
    std::vector<PlainPixel> floats;
    for (int i = 0; i < w * h; ++i)
        floats.push_back(plain(image.pixel(i % w, i / w)));
    const int weights[2][6][3] = {{{1, 0, 7}, {-1, 1, 3}, {0, 1, 5}, {1, 1, 1}, {0, 0, 0}, {0, 0, 0}},
                                  {{1, 0, 1}, {2, 0, 1}, {-1, 1, 1}, {0, 1, 1}, {1, 1, 1}, {0, 2, 1}}};
    const float divisor = method < 2 ? 16 : 8;
    QImage result(w, h, QImage::Format_ARGB32);
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const PlainPixel p = floats[y * w + x];
            PlainPixel t = p;
            if (premultiply) {
                const float qa = qAlpha(quantizeFloatPixel(p.r, p.g, p.b, p.a, code));
                t = {p.r * qa / 255, p.g * qa / 255, p.b * qa / 255, qa};
            }
            const QRgb o = quantizeFloatPixel(t.r, t.g, t.b, t.a, code);
            result.setPixel(x, y, o);
            const float f = premultiply ? 1 : float(qBound(0, qRound(p.a), 255)) / 255;
            const PlainPixel e{(qRed(o) - t.r) * f, (qGreen(o) - t.g) * f, (qBlue(o) - t.b) * f,
                               alphaFlag ? qAlpha(o) - p.a : 0};
            for (const auto& [dx, dy, weight] : weights[method / 2]) {
                if (weight == 0 || x + dx < 0 || x + dx >= w || y + dy >= h)
                    continue;
                PlainPixel& n = floats[(y + dy) * w + x + dx];
                n = {n.r - e.r * weight / divisor, n.g - e.g * weight / divisor, n.b - e.b * weight / divisor,
                     n.a - e.a * weight / divisor};
            }
        }
    }
    return result;
}

QImage reduced(const QImage& image, Format format, Dither dither, bool premultiply = false,
               const QColor& background = QColor(QRgb(0))) {
    return reduceColors(image, format, background, dither, premultiply);
}

QImage onePixel(QRgb pixel) {
    QImage image(1, 1, QImage::Format_ARGB32);
    image.fill(pixel);
    return image;
}

} // namespace

TEST(ReductionTables, takeNearestOrLowerLevels) {
    EXPECT_EQ(levels(5)[4], 33);
    EXPECT_EQ(levels(6)[16], 65);
    for (const int bits : {1, 4, 5, 6}) {
        const ReductionTable nearest = nearestTable(bits);
        const ReductionTable linear = linearTable(bits);
        for (int value = 0; value < 256; ++value) {
            ASSERT_EQ(nearest[value], nearestLevel(value, bits)) << bits << " bits, " << value;
            ASSERT_EQ(linear[value], levels(bits)[value >> (8 - bits)]) << bits << " bits, " << value;
        }
    }
    const std::vector<int> five = steps(nearestTable(5));
    EXPECT_EQ(std::vector<int>(five.begin(), five.begin() + 6), (std::vector<int>{5, 13, 21, 29, 38, 46}));
    EXPECT_EQ(steps(nearestTable(1)), (std::vector<int>{128}));
}

TEST(PixelReduction, usesTheBitsOfTheFormat) {
    const QRgb pixel = qRgba(100, 102, 103, 120);
    const int five = nearestLevel(100, 5);
    const auto four = [](int value) { return nearestLevel(value, 4); };
    EXPECT_EQ(quantizeNearestPixel(pixel, Code::RGB888), qRgba(100, 102, 103, 255));
    EXPECT_EQ(quantizeNearestPixel(pixel, Code::RGB565),
              qRgba(five, nearestLevel(102, 6), nearestLevel(103, 5), 255));
    EXPECT_EQ(quantizeNearestPixel(pixel, Code::RGBA4444), qRgba(four(100), four(102), four(103), four(120)));
    EXPECT_EQ(quantizeNearestPixel(pixel, Code::RGBA5551),
              qRgba(five, nearestLevel(102, 5), nearestLevel(103, 5), 0));
    EXPECT_EQ(quantizeNearestPixel(pixel, Code::RGBA5555),
              qRgba(five, nearestLevel(102, 5), nearestLevel(103, 5), nearestLevel(120, 5)));
    EXPECT_EQ(quantizeNearestPixel(pixel, Code::PVRTC4), pixel);
    EXPECT_EQ(quantizeLinearPixel(qRgba(4, 5, 8, 127), Code::RGBA5551), qRgba(0, 0, 8, 0));
    EXPECT_EQ(quantizeNearestPixel(qRgba(4, 5, 8, 128), Code::RGBA5551), qRgba(0, 8, 8, 255));
    EXPECT_EQ(quantizeFloatPixel(-3.0F, 254.5F, 1e9F, 0.49F, Code::Unreduced), qRgba(0, 255, 255, 0));
}

TEST(PixelReduction, refusesWhatARuleDoesNotKnow) {
    const auto bits = [](std::initializer_list<int> codes) {
        int all = 0;
        for (const int code : codes)
            all |= 1 << (code + 1);
        return all;
    };
    EXPECT_EQ(refusals(quantizeNearestPixel), bits({-1, 11, 12, 14}));
    EXPECT_EQ(refusals(quantizeLinearPixel), bits({-1, 7, 8, 9, 10, 11, 12, 13, 14}));
    EXPECT_EQ(refusals(floatRule), bits({-1, 7, 8, 9, 10, 11, 12, 13, 14}));
    const int codes[] = {5, 6, 2, 0, 1, 3, 4, 7, 8, 9, 10, 11, 12, 13};
    for (int format = 0; format < 14; ++format)
        EXPECT_EQ(static_cast<int>(pixelFormatCode(static_cast<Format>(format))), codes[format]);
}

TEST(ColorReduction, premultipliesAsFloatsRound) {
    QImage image(256, 256, QImage::Format_ARGB32);
    for (int alpha = 0; alpha < 256; ++alpha)
        for (int value = 0; value < 256; ++value)
            image.setPixel(value, alpha, qRgba(value, 255 - value, value, alpha));
    const QImage result = premultiplyImage(image);
    const QImage linear = quantizeImage(image, Code::RGBA4444, true, ReductionRule::Linear);
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int value = 0; value < 256; ++value) {
            const auto product = [alpha](int c) {
                return qRound(static_cast<float>(double(c) * alpha / 255));
            };
            const QRgb expected = qRgba(product(value), product(255 - value), product(value), alpha);
            ASSERT_EQ(result.pixel(value, alpha), expected);
            ASSERT_EQ(linear.pixel(value, alpha), quantizeLinearPixel(expected, Code::RGBA4444));
        }
    }
}

TEST(ErrorDiffusion, followsThePublishedKernels) {
    for (const QSize size : {QSize(31, 17), QSize(1, 9), QSize(9, 1), QSize(2, 2)}) {
        const QImage image = noise(size.width(), size.height(), 3);
        for (const Code code :
             {Code::RGB888, Code::RGB565, Code::RGBA4444, Code::RGBA5551, Code::RGBA5555, Code::Unreduced})
            for (int method = 0; method < 4; ++method)
                for (const bool premultiply : {false, true})
                    ASSERT_TRUE(samePixels(diffuseErrors(static_cast<DiffusionMethod>(method), image, code,
                                                         method % 2 == 1, premultiply),
                                           plainDiffusion(method, image, code, method % 2 == 1, premultiply)))
                        << "code " << static_cast<int>(code) << ", method " << method;
    }
}

TEST(ErrorDiffusion, countsByHand) {
    // 8 becomes 0 of the levels 0, 17, ...; 7/16 of the error of -8 goes on, so that 6 becomes 9.5 and
    // then 17.
    QImage image(2, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(8, 0, 0, 255));
    image.setPixel(1, 0, qRgba(6, 0, 0, 255));
    const QImage visible = reduced(image, Format::RGBA4444, Dither::FloydSteinberg);
    EXPECT_EQ(visible.pixel(0, 0), qRgba(0, 0, 0, 255));
    EXPECT_EQ(visible.pixel(1, 0), qRgba(17, 0, 0, 255));
    // The colour error of a transparent pixel stays with it; its alpha error goes on if asked.
    image.setPixel(0, 0, qRgba(8, 0, 0, 8));
    image.setPixel(1, 0, qRgba(6, 0, 0, 6));
    EXPECT_EQ(reduced(image, Format::RGBA4444, Dither::FloydSteinberg).pixel(1, 0), 0U);
    EXPECT_EQ(reduced(image, Format::RGBA4444, Dither::FloydSteinbergAlpha).pixel(1, 0), qRgba(0, 0, 0, 17));
}

TEST(ColorReduction, goesByFormatAndDitherType) {
    const QImage image = noise(13, 7, 8);
    const auto quantized = [&](ReductionRule rule) {
        return quantizeImage(image, Code::RGBA5551, true, rule);
    };
    const auto diffused = [&](int method, bool alpha) {
        return plainDiffusion(method, image, Code::RGBA5551, alpha, true);
    };
    const std::array<QImage, 6> expected{quantized(ReductionRule::Nearest),
                                         quantized(ReductionRule::Linear),
                                         diffused(0, false),
                                         diffused(1, true),
                                         diffused(2, false),
                                         diffused(3, true)};
    for (int type = 0; type < 6; ++type)
        EXPECT_TRUE(
            samePixels(reduced(image, Format::RGBA5551, static_cast<Dither>(type), true), expected[type]));
    EXPECT_TRUE(samePixels(reduced(image, Format::RGBA5551, static_cast<Dither>(6), true), image));
    for (const Format format : {Format::RGBA8888, Format::BGRA8888, Format::PVRTC2, Format::PVRTC4,
                                Format::PVRTC2_NOALPHA, Format::PVRTC4_NOALPHA, Format::ETC1}) {
        EXPECT_TRUE(samePixels(reduced(image, format, Dither::Atkinson), image));
        EXPECT_TRUE(samePixels(reduced(image, format, Dither::Atkinson, true), premultiplyImage(image)));
    }
}

TEST(ColorReduction, makesGreysOfAlphaAndOfTheMean) {
    const QRgb pixel = qRgba(10, 20, 32, 77);
    EXPECT_EQ(reduced(onePixel(pixel), Format::ALPHA, Dither::Linear, true).pixel(0, 0),
              qRgba(77, 77, 77, 255));
    EXPECT_EQ(reduced(onePixel(pixel), Format::ALPHA_INTENSITY, Dither::Linear, true).pixel(0, 0),
              qRgba(21, 21, 21, 77));
    EXPECT_EQ(rgbToIntensity(onePixel(qRgba(10, 20, 31, 0))).pixel(0, 0), qRgba(20, 20, 20, 0));
}

TEST(ColorReduction, flattensFormatsWithoutAlpha) {
    const auto flat = [](QRgb pixel, const QColor& background) {
        return reduced(onePixel(pixel), Format::RGB888, Dither::Atkinson, true, background).pixel(0, 0);
    };
    EXPECT_EQ(flat(0x80FF0000, QColor(QRgb(0))), 0xFF800000);
    EXPECT_EQ(flat(0x80FF0000, Qt::white), 0xFFFF7F7F);
    EXPECT_EQ(flat(0x00FF0000, QColor(1, 2, 3)), 0xFF010203);
    const QImage half = reduced(onePixel(0x80FF0000), Format::RGB565, Dither::NearestNeighbour);
    EXPECT_EQ(half.pixel(0, 0), qRgb(nearestLevel(128, 5), 0, 0));
    // Beyond the coordinates of the toolkit's painter.
    QImage wide(40000, 1, QImage::Format_ARGB32);
    wide.fill(0xFF102030);
    const QImage flatWide = reduced(wide, Format::RGB888, Dither::Linear, false, Qt::white);
    EXPECT_TRUE(samePixels(flatWide, wide));
}
