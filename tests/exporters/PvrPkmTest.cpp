#include "ColorReduction.h"
#include "Error.h"
#include "ImageLoader.h"
#include "TestSheets.h"
#include "WriteTexture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

using Format = SettingsBase::OutputFormat;
using Texture = SettingsBase::TextureFormat;

class PvrPkmTest : public testing::Test {
protected:
    QString path(const char* name) const { return folder.filePath(QString::fromLatin1(name)); }

    /// Publishes one sprite of those pixels as the whole sheet. The text of the failure, if there is one.
    QString publish(const char* name, Texture textureFormat, Format format, const QImage& pixels) {
        settings.setTextureFileName(path(name));
        settings.setTextureFormat(textureFormat);
        settings.setOutputFormat(format);
        try {
            writeTexture(settings, sheet(pixels.size(), {placedSprite(pixels, {0, 0})}),
                         [](int, const QString&) {});
        } catch (const Error& error) {
            return QString::number(error.code()) + QLatin1Char(' ') + error.message();
        }
        return {};
    }

    QByteArray content(const char* name) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        return file.readAll();
    }

    QImage loaded(const char* name) const {
        return QtUniversalImageLoader::ImageLoader::instance()->load(path(name));
    }

    QTemporaryDir folder;
    Settings settings;
};

} // namespace

// A reduced sheet is the same whether it comes from a PNG, a TGA or a PVR file.
TEST_F(PvrPkmTest, sheetsComeBackAsTheyWereReduced) {
    const QImage source = noise(33, 17, 3);
    for (const Format format : {Format::RGBA8888, Format::BGRA8888, Format::RGBA4444, Format::RGB888,
                                Format::RGB565, Format::RGBA5551, Format::ALPHA, Format::ALPHA_INTENSITY}) {
        const QImage pixels = reduceColors(source, format, Qt::black, settings.ditherType(), false);
        ASSERT_EQ(publish("a.pvr", Texture::pvr2, format, pixels), QString());
        QImage expected = pixels.convertToFormat(QImage::Format_ARGB32);
        if (format == Format::ALPHA) // the grey value is the alpha of a black texture
            for (int i = 0; i < 33 * 17; ++i)
                expected.setPixel(i % 33, i / 33, expected.pixel(i % 33, i / 33) << 24);
        EXPECT_TRUE(samePixels(loaded("a.pvr").convertToFormat(QImage::Format_ARGB32), expected))
            << int(format);
        ASSERT_EQ(publish("a.tga", Texture::tga, format, pixels), QString());
        EXPECT_TRUE(samePixels(loaded("a.tga"), pixels.convertToFormat(QImage::Format_ARGB32)));
    }
}

TEST_F(PvrPkmTest, nameDecidesTheContainer) {
    const QImage pixels = noise(8, 8, 1);
    for (const Texture texture : {Texture::pvr2, Texture::pvr2gz, Texture::pvr2ccz}) {
        ASSERT_EQ(publish("a.pvr", texture, Format::RGBA8888, pixels), QString());
        EXPECT_TRUE(content("a.pvr").startsWith("\x34"));
        ASSERT_EQ(publish("A.PVR.CCZ", texture, Format::RGBA8888, pixels), QString());
        EXPECT_TRUE(content("A.PVR.CCZ").startsWith("CCZ!"));
        ASSERT_EQ(publish("a.pvr.gz", texture, Format::RGBA8888, pixels), QString());
        EXPECT_TRUE(content("a.pvr.gz").startsWith("\x1F\x8B"));
        EXPECT_EQ(publish("a.png", texture, Format::RGBA8888, pixels),
                  QStringLiteral("12 Failed to write file %1").arg(path("a.png")));
    }
    for (const char* name : {"a.pvr", "A.PVR.CCZ", "a.pvr.gz"})
        EXPECT_TRUE(samePixels(loaded(name), pixels)) << name;
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 3);
}

TEST_F(PvrPkmTest, flippedSheets) {
    const QImage pixels = noise(8, 8, 1);
    settings.setFlipPVR(true);
    ASSERT_EQ(publish("a.pvr", Texture::pvr2, Format::RGBA8888, pixels), QString());
    EXPECT_EQ(content("a.pvr").mid(16, 4), QByteArray::fromHex("12800100"));
    EXPECT_TRUE(samePixels(loaded("a.pvr"), pixels.mirrored()));
}

TEST_F(PvrPkmTest, compressedSheets) {
    QImage pixels(256, 256, QImage::Format_ARGB32);
    for (int y = 0; y < 256; ++y)
        for (int x = 0; x < 256; ++x)
            pixels.setPixel(x, y, qRgb(x, y, 128));
    const auto worstPixel = [&](const QImage& image) {
        int worst = 0;
        for (int y = 8; y < 248; ++y) // PVRTC wraps around, and so blends the borders
            for (int x = 8; x < 248; ++x) {
                const QRgb is = image.pixel(x, y), was = pixels.pixel(x, y);
                worst = std::max({worst, std::abs(qRed(is) - qRed(was)), std::abs(qGreen(is) - qGreen(was)),
                                  std::abs(qBlue(is) - qBlue(was))});
            }
        return worst;
    };
    for (const auto& [format, size] : {std::pair{Format::PVRTC4, 32768},
                                       {Format::PVRTC2, 16384},
                                       {Format::PVRTC4_NOALPHA, 32768},
                                       {Format::PVRTC2_NOALPHA, 16384}}) {
        ASSERT_EQ(publish("a.pvr", Texture::pvr2, format, pixels), QString());
        EXPECT_EQ(content("a.pvr").size(), 52 + size);
        EXPECT_LT(worstPixel(loaded("a.pvr")), 24) << int(format);
    }
    ASSERT_EQ(publish("a.pkm", Texture::pkm, Format::ETC1, pixels), QString());
    EXPECT_EQ(content("a.pkm").size(), 16 + 32768);
    EXPECT_LT(worstPixel(loaded("a.pkm")), 24);
    EXPECT_EQ(publish("a.pvr", Texture::pvr2, Format::ETC1, pixels),
              QStringLiteral("12 Failed to write file %1").arg(path("a.pvr")));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
              QStringList{QStringLiteral("a.pkm")});
}
