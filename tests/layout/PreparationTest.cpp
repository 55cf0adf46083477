#include "Error.h"
#include "SpritePreparation.h"
#include "TestPictures.h"

#include <algorithm>

using namespace SpritePreparation;

namespace {

bool columnOpaque(const QImage& image, int x, int threshold) {
    for (int y = 0; y < image.height(); ++y)
        if (qAlpha(image.pixel(x, y)) >= threshold)
            return true;
    return false;
}

bool rowOpaque(const QImage& image, int y, int left, int right, int threshold) {
    for (int x = left; x <= right; ++x)
        if (qAlpha(image.pixel(x, y)) >= threshold)
            return true;
    return false;
}

/// The steps one after the other, by whole columns and rows.
TrimResult plainTrim(const QImage& image, int threshold, int e, int dx, int dy) {
    const int w = image.width();
    const int h = image.height();
    int left = 0;
    while (left < w && !columnOpaque(image, left, threshold))
        ++left;
    if (left == w) {
        QImage transparent(dx + 2 * e, dy + 2 * e, QImage::Format_ARGB32);
        transparent.fill(0U);
        return {transparent, {0, 0}};
    }
    if (left > e)
        left -= e;
    int right = w - 1;
    while (!columnOpaque(image, right, threshold))
        --right;
    if (right < w - e)
        right += e;
    int top = 0;
    while (!rowOpaque(image, top, left, right, threshold))
        ++top;
    if (top > e)
        top -= e;
    int bottom = h - 1;
    while (!rowOpaque(image, bottom, left, right, threshold))
        --bottom;
    if (bottom < h - e)
        bottom += e;
    if (std::abs(right - left + 1 - w) % 2 == 1)
        left > 0 ? --left : ++right;
    if (std::abs(bottom - top + 1 - h) % 2 == 1)
        top > 0 ? --top : ++bottom;
    left = left / dx * dx;
    right = (right + dx) / dx * dx - 1;
    top = top / dy * dy;
    bottom = (bottom + dy) / dy * dy - 1;
    return {image.copy(left, top, right - left + 1, bottom - top + 1), {left, top}};
}

/// Mostly transparent, with pixels around the thresholds.
QImage speckles(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(
                x, y, random() % 16 == 0 ? qRgba(random(), y, x, 90 + random() % 20) : qRgba(9, 9, 9, 0));
    return image;
}

} // namespace

TEST(Preparation, extrudesEdgesAndCorners) {
    EXPECT_TRUE(samePixels(extrudeBorder(picture({"ab", ".d"}), 2),
                           picture({"aaabbb", "aaabbb", "aaabbb", "...ddd", "...ddd", "...ddd"})));
    const QImage image = noise(3, 2, 1);
    EXPECT_EQ(extrudeBorder(image, 0).cacheKey(), image.cacheKey());
    EXPECT_THROW(extrudeBorder(image, std::numeric_limits<int>::max()), Error);
    EXPECT_THROW(extrudeBorder(image, 1 << 14), Error) << "a gigabyte";
}

TEST(Preparation, padsToDivisorsAroundTheMiddle) {
    EXPECT_TRUE(samePixels(padToDivisors(picture({"abc"}), 2, 2), picture({"abc.", "...."})));
    EXPECT_TRUE(samePixels(padToDivisors(picture({"a"}), 4, 3), picture({"....", ".a..", "...."})));
    const QImage image = noise(4, 6, 1);
    EXPECT_EQ(padToDivisors(image, 2, 3).cacheKey(), image.cacheKey());
}

TEST(Preparation, copiesHalfTransparentPixelsExactly) {
    QImage image(1, 1, QImage::Format_ARGB32);
    image.fill(0x01FEDCBA); // would come back in another colour from a premultiplied detour
    EXPECT_EQ(extrudeBorder(image, 1).pixel(0, 0), 0x01FEDCBAU);
    EXPECT_EQ(padToDivisors(image, 3, 3).pixel(1, 1), 0x01FEDCBAU);
    EXPECT_EQ(addInnerPadding(image, 2).pixel(2, 2), 0x01FEDCBAU);
}

TEST(Preparation, trimsByTheStepsInOrder) {
    unsigned seed = 0;
    for (int width = 1; width <= 11; width += 2)
        for (int height = 1; height <= 12; ++height)
            for (int extrude = 0; extrude <= 3; ++extrude)
                for (int divisor = 1; divisor <= 4; ++divisor) {
                    const QImage image = speckles(width + divisor % 2, height, ++seed);
                    const int threshold = seed % 3 == 0 ? 100 : 1;
                    const TrimResult actual =
                        trimTransparent(image, threshold, extrude, divisor, 5 - divisor);
                    const TrimResult expected = plainTrim(image, threshold, extrude, divisor, 5 - divisor);
                    ASSERT_EQ(actual.offset, expected.offset) << "seed " << seed;
                    ASSERT_TRUE(samePixels(actual.image, expected.image)) << "seed " << seed;
                }
}

TEST(Preparation, trimsByHand) {
    // An even part of an odd image grows by one column to the left.
    const TrimResult grown = trimTransparent(picture({".....", "..ab.", "....."}), 1, 0, 1, 1);
    EXPECT_EQ(grown.offset, QPoint(1, 1));
    EXPECT_TRUE(samePixels(grown.image, picture({".ab"})));
    const TrimResult empty = trimTransparent(picture({"...", "..."}), 1, 2, 4, 1);
    EXPECT_EQ(empty.offset, QPoint(0, 0));
    EXPECT_TRUE(
        samePixels(empty.image, picture({"........", "........", "........", "........", "........"})));
    // Multiples of the divisor reach beyond the image.
    const TrimResult aligned = trimTransparent(picture({"...ab"}), 1, 0, 4, 2);
    EXPECT_EQ(aligned.offset, QPoint(0, 0));
    EXPECT_TRUE(samePixels(aligned.image, picture({"...ab...", "........"})));
    EXPECT_THROW(trimTransparent(picture({"a"}), 1, 0, std::numeric_limits<int>::max(), 1), Error);
}

TEST(Preparation, masksTheBorderColor) {
    const QImage masked =
        maskHeuristically(picture({"bbbbbbbbbb", "baabbbbbbb", "baaabbbbbb", "bbbbbbbbbb"}));
    EXPECT_TRUE(samePixels(masked, picture({"..........", ".aa.......", ".aaa......", ".........."})));
}

TEST(Preparation, drawsTheDebugFrameOnePixelInside) {
    QImage image = picture({"....", "....", "...."});
    image.setPixel(0, 0, 0xFF00FF00);
    const QImage framed = drawDebugFrame(image);
    const QRgb line = 0xFFFF0000, tint = 0x80FF0000;
    const QRgb expected[3][4] = {
        {0xFF00FF00, line, line, tint}, {line, line, line, tint}, {tint, tint, tint, tint}};
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(framed.pixel(x, y), expected[y][x]) << x << ", " << y;
    EXPECT_EQ(drawDebugFrame(picture({"."})).pixel(0, 0), line);
    EXPECT_EQ(drawDebugFrame(picture({"..", ".."})).pixel(1, 1), tint);
}

TEST(Preparation, hashesASampleOfPixels) {
    EXPECT_EQ(pixelHash(QImage()), 0U);
    EXPECT_EQ(pixelHash(picture({"."})), 1U); // 0 stands for no image
    // Of one pixel: the nibbles of 100 rotations by 4 bits. Twelve times eight rotations cancel out, four are
    // left.
    QImage pixel(1, 1, QImage::Format_ARGB32);
    pixel.fill(0x00000001);
    EXPECT_EQ(pixelHash(pixel), 0x00001111U);
    QImage one = noise(200, 300, 4);
    QImage other = one;
    other.setPixel(150, 150, ~one.pixel(150, 150));
    EXPECT_EQ(pixelHash(one), pixelHash(other)); // beyond the sample
    other.setPixel(99, 99, ~one.pixel(99, 99));
    EXPECT_NE(pixelHash(one), pixelHash(other));
}

TEST(Preparation, makesNothingOfNothing) {
    EXPECT_TRUE(maskHeuristically(QImage()).isNull());
    EXPECT_TRUE(extrudeBorder(QImage(), 2).isNull());
    EXPECT_TRUE(padToDivisors(QImage(), 2, 2).isNull());
    EXPECT_TRUE(trimTransparent(QImage(), 1, 2, 2, 2).image.isNull());
    EXPECT_TRUE(addInnerPadding(QImage(), 2).isNull());
    EXPECT_TRUE(drawDebugFrame(QImage()).isNull());
    EXPECT_TRUE(cutOut(noise(2, 2, 1), QRect(0, 0, 0, 2)).isNull());
}
