#include "BorderColorFiller.h"
#include "Error.h"
#include "ImageExporter.h"
#include "RotateImage.h"
#include "TestSheets.h"

#include <vector>

namespace {

using Format = SettingsBase::OutputFormat;

QImage rendered(const PackedTexture& texture, const Settings& settings = Settings()) {
    return ImageExporter::renderTexture(settings, texture);
}

/// Generation after generation, with floats and setPixel().
class PlainFlood {
public:
    PlainFlood(const QImage& image, PixelFormatCode format)
        : m_image(image), m_format(format), m_colored(image.width() * image.height()),
          m_queued(image.width() * image.height()) {}

    QImage run() {
        std::vector<int> generation = seeds();
        while (!generation.empty()) {
            std::vector<int> next;
            for (const int index : generation)
                color(index % m_image.width(), index / m_image.width(), next);
            generation = next;
        }
        return m_image;
    }

private:
    template <class Visit>
    void aroundPixel(int x, int y, Visit visit) const {
        for (int i = qMax(x - 1, 0); i <= qMin(x + 1, m_image.width() - 1); ++i)
            for (int j = qMax(y - 1, 0); j <= qMin(y + 1, m_image.height() - 1); ++j)
                visit(i, j);
    }

    int index(int x, int y) const { return y * m_image.width() + x; }

    std::vector<int> seeds() {
        std::vector<int> result;
        for (int x = 0; x < m_image.width(); ++x) {
            for (int y = 0; y < m_image.height(); ++y) {
                if (m_image.pixel(x, y) >= 0x01000000) {
                    m_colored[index(x, y)] = m_queued[index(x, y)] = true;
                    continue;
                }
                bool found = false;
                for (const int dx : {-1, 1})
                    for (const int dy : {-1, 1})
                        found |= m_image.pixel(qBound(0, x + dx, m_image.width() - 1),
                                               qBound(0, y + dy, m_image.height() - 1)) >= 0x01000000;
                if (found) {
                    result.push_back(index(x, y));
                    m_queued[index(x, y)] = true;
                }
            }
        }
        return result;
    }

    void color(int x, int y, std::vector<int>& next) {
        float red = 0, green = 0, blue = 0;
        int count = 0;
        aroundPixel(x, y, [&](int i, int j) {
            if (!m_colored[index(i, j)])
                return;
            red += qRed(m_image.pixel(i, j));
            green += qGreen(m_image.pixel(i, j));
            blue += qBlue(m_image.pixel(i, j));
            ++count;
        });
        const auto mean = [count](float sum) { return static_cast<int>(sum / count + 0.5F); };
        m_image.setPixel(x, y, quantizeNearestPixel(qRgba(mean(red), mean(green), mean(blue), 0), m_format));
        m_colored[index(x, y)] = true;
        aroundPixel(x, y, [&](int i, int j) {
            if (m_queued[index(i, j)])
                return;
            m_queued[index(i, j)] = true;
            next.push_back(index(i, j));
        });
    }

    QImage m_image;
    PixelFormatCode m_format;
    std::vector<bool> m_colored, m_queued;
};

QImage islands(int width, int height, unsigned seed) {
    std::mt19937 random(seed);
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, random() % 12 == 0 ? random() | 0x01000000 : random() & 0xFFFFFF);
    return image;
}

} // namespace

TEST(Rotation, turnsByAQuarter) {
    const QImage image = picture({"abc", "def"});
    EXPECT_TRUE(samePixels(rotateClockwise(image), picture({"da", "eb", "fc"})));
    EXPECT_TRUE(samePixels(rotateCounterClockwise(image), picture({"cf", "be", "ad"})));
    const QImage large = noise(70, 41, 2);
    const QImage turned = rotateClockwise(large);
    for (int y = 0; y < large.height(); ++y)
        for (int x = 0; x < large.width(); ++x)
            ASSERT_EQ(turned.pixel(large.height() - 1 - y, x), large.pixel(x, y));
    EXPECT_TRUE(samePixels(rotateCounterClockwise(turned), large));
    EXPECT_TRUE(rotateClockwise(QImage()).isNull());
}

TEST(Rendering, refusesAnEmptySheet) {
    for (const QSize size : {QSize(0, 5), QSize(5, 0), QSize(-1, -1)}) {
        try {
            rendered(sheet(size));
            ADD_FAILURE();
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), 12);
            EXPECT_EQ(error.message(), QStringLiteral("Resulting image is empty."));
        }
    }
    EXPECT_EQ(rendered(sheet({1, 1})).size(), QSize(1, 1));
}

TEST(Rendering, fillsByFormatAndBackground) {
    struct Case {
        Format format;
        QRgb background, expected;
    };
    const Case cases[] = {
        {Format::RGBA8888, 0, 0},        {Format::RGBA8888, 0xFF112233, 0xFF112233},
        {Format::RGB565, 0, 0xFF000000}, {Format::RGB565, 0xFF112233, 0xFF112233},
        {Format::RGB888, 0, 0xFF000000}, {Format::ALPHA, 0xFF112233, 0xFF000000},
        {Format::PVRTC4_NOALPHA, 0, 0},  {Format::ETC1, 0x00112233, 0x00112233},
    };
    for (const Case& c : cases) {
        Settings settings;
        settings.setOutputFormat(c.format);
        settings.setBackgroundColor(c.background);
        EXPECT_EQ(rendered(sheet({2, 2}), settings).pixel(1, 1), c.expected) << static_cast<int>(c.format);
    }
}

TEST(Rendering, storesTheResolution) {
    Settings settings;
    EXPECT_EQ(rendered(sheet({1, 1}), settings).dotsPerMeterX(), 2835);
    settings.setDpi(300);
    EXPECT_EQ(rendered(sheet({1, 1}), settings).dotsPerMeterY(), 11811);
}

TEST(Rendering, stampsWithoutBlendingInOrder) {
    Settings settings;
    settings.setBackgroundColor(letterColor(QLatin1Char('z')));
    const QImage abc = picture({"abc", "d.f"});
    const PackedTexture texture =
        sheet({8, 5}, {placedSprite(abc, {0, 0}), placedSprite(picture({"x"}), {2, 1}),
                       placedSprite(abc, {4, 0}, true, 0), placedSprite(abc, {6, 0}, true, 1)});
    EXPECT_TRUE(samePixels(rendered(texture, settings),
                           picture({"abczdacf", "d.xz.bb.", "zzzzfcad", "zzzzzzzz", "zzzzzzzz"})));
}

TEST(Rendering, clipsWhatReachesOutside) {
    const QImage image = picture({"abc", "def", "ghi"});
    EXPECT_TRUE(samePixels(rendered(sheet({2, 2}, {placedSprite(image, {-1, -1})})), picture({"ef", "hi"})));
    EXPECT_TRUE(samePixels(rendered(sheet({2, 2}, {placedSprite(image, {1, 1})})), picture({"..", ".a"})));
    EXPECT_TRUE(
        samePixels(rendered(sheet({2, 1}, {placedSprite(image, {5, 0}), placedSprite(QImage(), {0, 0})})),
                   picture({".."})));
}

TEST(Rendering, givesAliasesNoPixels) {
    PackedSprite owner = placedSprite(picture({"a"}), {1, 0});
    owner.addAlias(placedSprite(picture({"b"}), {0, 0}));
    EXPECT_TRUE(samePixels(rendered(sheet({2, 1}, {owner})), picture({".a"})));
}

TEST(BorderColors, spreadLikeThePlainFlood) {
    for (const PixelFormatCode format : {PixelFormatCode::RGB888, PixelFormatCode::RGB565,
                                         PixelFormatCode::RGBA4444, PixelFormatCode::RGBA8888}) {
        for (const QSize size : {QSize(37, 23), QSize(1, 30), QSize(30, 1), QSize(2, 2), QSize(90, 70)}) {
            const QImage image = islands(size.width(), size.height(), 11);
            ASSERT_TRUE(samePixels(fillBorderColors(image, format), PlainFlood(image, format).run()))
                << static_cast<int>(format) << ", " << size.width() << "x" << size.height();
        }
    }
}

TEST(BorderColors, startAtDiagonals) {
    // One pixel colours its diagonals first; what lies straight beside it then sees two and three colours.
    QImage image = picture({"...", "...", "...", "..."});
    image.setPixel(1, 1, 0xFF64C832);
    const QImage filled = fillBorderColors(image, PixelFormatCode::RGBA8888);
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 3; ++x)
            EXPECT_EQ(filled.pixel(x, y), x == 1 && y == 1 ? 0xFF64C832 : 0x0064C832) << x << ", " << y;
    // Columns come in order: the second one is red when the third is filled, which sees two reds and one
    // blue.
    QImage two = picture({"....", "....", "...."});
    two.setPixel(0, 0, 0xFFFF0000);
    two.setPixel(3, 0, 0xFF0000FF);
    const QImage mixed = fillBorderColors(two, PixelFormatCode::RGBA8888);
    EXPECT_EQ(mixed.pixel(1, 0), 0x00FF0000U);
    EXPECT_EQ(mixed.pixel(1, 1), 0x00FF0000U);
    EXPECT_EQ(mixed.pixel(2, 0), 0x00AA0055U);
}

TEST(BorderColors, leaveAlphaAndBlankImagesAlone) {
    QImage blank(9, 9, QImage::Format_ARGB32);
    blank.fill(0x00123456);
    EXPECT_TRUE(samePixels(fillBorderColors(blank, PixelFormatCode::ALPHA), blank));
    const QImage image = islands(20, 20, 3);
    const QImage filled = fillBorderColors(image, PixelFormatCode::RGBA8888);
    for (int y = 0; y < 20; ++y)
        for (int x = 0; x < 20; ++x)
            ASSERT_EQ(qAlpha(filled.pixel(x, y)), qAlpha(image.pixel(x, y)));
}

TEST(BorderColors, needAFormatWithReduction) {
    Settings settings;
    settings.setReduceBorderArtifacts(true);
    settings.setOutputFormat(Format::ALPHA_INTENSITY);
    const PackedTexture half = sheet({2, 1}, {placedSprite(picture({"a"}), {0, 0})});
    try {
        rendered(half, settings);
        ADD_FAILURE();
    } catch (const Error& error) {
        EXPECT_EQ(error.code(), 16);
        EXPECT_EQ(error.message(), QStringLiteral("Invalid pixel format for quant_nn"));
    }
    EXPECT_NO_THROW(rendered(sheet({1, 1}, {placedSprite(picture({"a"}), {0, 0})}), settings));
    settings.setOutputFormat(Format::RGBA8888);
    EXPECT_EQ(rendered(half, settings).pixel(1, 0), letterColor(QLatin1Char('a')) & 0xFFFFFF);
}
