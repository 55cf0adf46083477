#include "Error.h"
#include "PlainHq2x.h"
#include "ScaleImage.h"
#include "TestPictures.h"

namespace {

constexpr ScaleMode allModes[] = {ScaleMode::Smooth,  ScaleMode::Fast,    ScaleMode::Scale2x,
                                  ScaleMode::Scale3x, ScaleMode::Scale4x, ScaleMode::Eagle,
                                  ScaleMode::Hq2x};

/// Few colours, so that neighbours are often equal, some alike to the eye and some differing in alpha alone.
QImage pixelArt(int width, int height, unsigned seed, const std::vector<QRgb>& colors) {
    std::mt19937 random(seed);
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, colors[random() % colors.size()]);
    return image;
}

/// The neighbour at an offset, clamped to the image.
QRgb at(const QImage& image, int x, int y) {
    return image.pixel(qBound(0, x, image.width() - 1), qBound(0, y, image.height() - 1));
}

/// The published rules of one block, one by one.
std::vector<QRgb> plainBlock(ScaleMode mode, const QImage& s, int x, int y) {
    const QRgb A = at(s, x - 1, y - 1), B = at(s, x, y - 1), C = at(s, x + 1, y - 1);
    const QRgb D = at(s, x - 1, y), E = at(s, x, y), F = at(s, x + 1, y);
    const QRgb G = at(s, x - 1, y + 1), H = at(s, x, y + 1), I = at(s, x + 1, y + 1);
    if (mode == ScaleMode::Scale2x)
        return {D == B && D != H && B != F ? D : E, B == F && B != D && F != H ? F : E,
                D == H && D != B && H != F ? D : E, F == H && F != B && H != D ? H : E};
    if (mode == ScaleMode::Eagle)
        return {D == A && A == B ? A : E, B == C && C == F ? C : E, D == G && G == H ? G : E,
                F == I && I == H ? I : E};
    if (B == H || D == F)
        return std::vector<QRgb>(9, E);
    return {D == B ? D : E,
            D == B && E != C   ? B
            : B == F && E != A ? B
                               : E,
            B == F ? F : E,
            D == B && E != G   ? D
            : D == H && E != A ? D
                               : E,
            E,
            B == F && E != I   ? F
            : H == F && E != C ? F
                               : E,
            D == H ? D : E,
            D == H && E != I   ? H
            : H == F && E != G ? H
                               : E,
            H == F ? F : E};
}

QImage plainFilter(ScaleMode mode, const QImage& source) {
    const int factor = mode == ScaleMode::Scale3x ? 3 : 2;
    QImage result(source.size() * factor, QImage::Format_ARGB32);
    for (int y = 0; y < source.height(); ++y)
        for (int x = 0; x < source.width(); ++x)
            for (int i = 0; i < factor * factor; ++i)
                result.setPixel(x * factor + i % factor, y * factor + i / factor,
                                plainBlock(mode, source, x, y)[i]);
    return result;
}

} // namespace

TEST(Scaling, leavesTheImageAloneAtScaleOneUnlessAFilterHasAFactor) {
    const QImage image = noise(5, 3, 1);
    EXPECT_EQ(scaleImage(image, 1.0, ScaleMode::Smooth).cacheKey(), image.cacheKey());
    EXPECT_EQ(scaleImage(image, 1.0, ScaleMode::Fast).cacheKey(), image.cacheKey());
    EXPECT_EQ(scaleImage(image, 1.0, ScaleMode::Scale2x).size(), QSize(10, 6));
    EXPECT_EQ(scaleImage(image, 0.5, ScaleMode::Scale2x).size(), QSize(10, 6));
    EXPECT_EQ(scaleImage(image, 0.5, ScaleMode::Scale3x).size(), QSize(15, 9));
    EXPECT_EQ(scaleImage(image, 7.0, ScaleMode::Scale4x).size(), QSize(20, 12));
}

TEST(Scaling, roundsSidesInSinglePrecision) {
    // 0.21 x 150 is 31.5 in doubles, but less in floats; with 0.35 x 90 it is the other way round.
    EXPECT_EQ(scaleImage(noise(150, 5, 1), 0.21, ScaleMode::Fast).size(), QSize(31, 1));
    EXPECT_EQ(scaleImage(noise(90, 5, 1), 0.35, ScaleMode::Smooth).size(), QSize(32, 2));
    EXPECT_EQ(scaleImage(noise(5, 3, 1), 0.5, ScaleMode::Smooth).size(), QSize(3, 2)); // halves go up
}

TEST(Scaling, fastTakesNearestPixels) {
    const QImage scaled = scaleImage(picture({"ab", "c."}), 2.0, ScaleMode::Fast);
    EXPECT_TRUE(samePixels(scaled, picture({"aabb", "aabb", "cc..", "cc.."})));
}

TEST(Scaling, countsTheAskedSizeInEveryMode) {
    const QImage pixel = picture({"a"});
    for (const ScaleMode mode : {ScaleMode::Scale2x, ScaleMode::Eagle, ScaleMode::Hq2x})
        EXPECT_EQ(scaleImage(pixel, 8192, mode).size(), QSize(2, 2));
    for (const ScaleMode mode : allModes) {
        for (const double scale : {8192.5, 1e30, std::nan(""), -1e30}) {
            try {
                scaleImage(pixel, scale, mode);
                ADD_FAILURE() << "no error at scale " << scale;
            } catch (const Error& error) {
                EXPECT_EQ(error.code(), 42);
                EXPECT_EQ(error.message(), QStringLiteral("Scaled sprite exceeds maximum texture size"));
            }
        }
    }
}

TEST(Scaling, givesNothingForNothing) {
    EXPECT_TRUE(scaleImage(noise(9, 9, 1), 0.05, ScaleMode::Smooth).isNull());
    EXPECT_TRUE(scaleImage(noise(90, 9, 1), 0.05, ScaleMode::Fast).isNull());
    EXPECT_TRUE(scaleImage(noise(9, 9, 1), -1.0, ScaleMode::Smooth).isNull());
    EXPECT_TRUE(scaleImage(noise(9, 9, 1), 2.0, static_cast<ScaleMode>(7)).isNull());
    for (const ScaleMode mode : allModes)
        EXPECT_TRUE(scaleImage(QImage(), 2.0, mode).isNull());
}

TEST(Scaling, keepsASinglePixelUniform) {
    for (const QRgb color : {0xFF336699U, 0x80FFFFFFU, 0x00000000U}) {
        QImage pixel(1, 1, QImage::Format_ARGB32);
        pixel.fill(color);
        for (const ScaleMode mode : allModes) {
            const QImage scaled = scaleImage(pixel, 3.0, mode);
            QImage expected(scaled.size(), QImage::Format_ARGB32);
            ASSERT_FALSE(scaled.isNull());
            expected.fill(color);
            // Smooth goes through premultiplied pixels.
            const bool same = mode == ScaleMode::Smooth || samePixels(scaled, expected);
            EXPECT_TRUE(same) << static_cast<int>(mode);
        }
    }
}

TEST(Scaling, neighbourFiltersFollowTheirRules) {
    // Equal colours of another alpha are other pixels.
    const std::vector<QRgb> colors{0xFF0000FF, 0x800000FF, 0xFFFF0000};
    for (const ScaleMode mode : {ScaleMode::Scale2x, ScaleMode::Scale3x, ScaleMode::Eagle}) {
        for (const QSize size : {QSize(40, 30), QSize(1, 7), QSize(7, 1), QSize(2, 2)}) {
            const QImage source = pixelArt(size.width(), size.height(), 5, colors);
            EXPECT_TRUE(samePixels(scaleImage(source, 1.0, mode), plainFilter(mode, source)));
        }
    }
    const QImage source = pixelArt(20, 20, 6, colors);
    const QImage twice = plainFilter(ScaleMode::Scale2x, plainFilter(ScaleMode::Scale2x, source));
    EXPECT_TRUE(samePixels(scaleImage(source, 1.0, ScaleMode::Scale4x), twice));
    EXPECT_TRUE(samePixels(scaleImage(picture({"ab", "bb"}), 1.0, ScaleMode::Scale2x),
                           picture({"aabb", "abbb", "bbbb", "bbbb"})));
}

TEST(Scaling, hq2xGivesThePublishedResultForAllPatterns) {
    // Colours on both sides of the thresholds of luma and chroma, each with some that count as alike.
    const std::vector<QRgb> colors{0xFF000000, 0xFF202020, 0xFF404040, 0xFFFFFFFF, 0xFFE0E0E0,
                                   0xFFC01010, 0xFFC01A10, 0xFF10C010, 0xFF1010C0};
    std::set<int> patterns;
    for (unsigned seed = 0; seed < 4; ++seed) {
        const QImage source = pixelArt(120, 90, seed, {colors.begin(), colors.begin() + 3 + 2 * seed});
        const QImage expected = plainHq2x(source, patterns).convertToFormat(QImage::Format_ARGB32);
        EXPECT_TRUE(samePixels(scaleImage(source, 1.0, ScaleMode::Hq2x), expected));
    }
    EXPECT_EQ(patterns.size(), 256U);
}

TEST(Scaling, hq2xFiltersAlphaApart) {
    const QImage source = pixelArt(40, 30, 9, {0x00FF8040, 0x00000000, 0xFFC01010, 0x80C01010, 0xF010C010});
    QImage color = source;
    QImage alpha = source;
    for (int y = 0; y < source.height(); ++y) {
        for (int x = 0; x < source.width(); ++x) {
            const int a = qAlpha(source.pixel(x, y));
            color.setPixel(x, y, a == 0 ? 0xFF000000 : source.pixel(x, y) | 0xFF000000);
            alpha.setPixel(x, y, qRgb(a, a, a));
        }
    }
    std::set<int> patterns;
    color = plainHq2x(color, patterns);
    alpha = plainHq2x(alpha, patterns);
    QImage expected(color.size(), QImage::Format_ARGB32);
    for (int y = 0; y < expected.height(); ++y)
        for (int x = 0; x < expected.width(); ++x)
            expected.setPixel(x, y, (color.pixel(x, y) & 0xFFFFFF) | qBlue(alpha.pixel(x, y)) << 24);
    EXPECT_TRUE(samePixels(scaleImage(source, 1.0, ScaleMode::Hq2x), expected));
}
