#include "Error.h"
#include "ImageExporterFactory.h"
#include "ImageExporterPng.h"
#include "ImageExporterPvr.h"
#include "ImageExporterUniversal.h"
#include "ImageLoader.h"
#include "TestSheets.h"
#include "WriteTexture.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

using Format = SettingsBase::OutputFormat;
using Texture = SettingsBase::TextureFormat;

class ImageExporterTest : public testing::Test {
protected:
    ImageExporterTest() : pixels(noise(40, 30, 1)) {
        for (int y = 0; y < pixels.height(); ++y)
            for (int x = 0; x < pixels.width(); ++x)
                pixels.setPixel(x, y, pixels.pixel(x, y) | 0xFF000000);
        texture = sheet(pixels.size(), {placedSprite(pixels, {0, 0})});
    }

    QString path(const QString& name) const { return folder.filePath(name); }

    /// All that lies in the folder.
    QStringList entries() const {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }

    void touch(const QString& name) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("old");
    }

    QByteArray content(const QString& name) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(name);
        return file.readAll();
    }

    void write(ImageExporter& exporter, const QString& name) {
        exporter.setFileName(path(name));
        exporter.write(settings, texture);
    }

    /// The Error of a write: code and text.
    std::pair<int, QString> failure(ImageExporter&& exporter, const QString& name) {
        try {
            write(exporter, name);
        } catch (const Error& error) {
            return {error.code(), error.message()};
        }
        return {0, {}};
    }

    std::pair<int, QString> publishFailure() {
        try {
            writeTexture(settings, texture, [](int, const QString&) {});
        } catch (const Error& error) {
            return {error.code(), error.message()};
        }
        return {0, {}};
    }

    QTemporaryDir folder;
    Settings settings;
    QImage pixels;
    PackedTexture texture;
};

} // namespace

TEST_F(ImageExporterTest, isChosenByTextureFormatAlone) {
    const auto is = [](auto* expected, Texture format, uint level) {
        const auto exporter = makeImageExporter(format, level);
        return dynamic_cast<decltype(expected)>(exporter.get()) != nullptr;
    };
    ImageExporterPng* png = nullptr;
    ImageExporterUniversal* universal = nullptr;
    ImageExporterPvr* pvr = nullptr;
    EXPECT_TRUE(is(png, Texture::png, 0));
    EXPECT_TRUE(is(universal, Texture::png, 1));
    for (const Texture format : {Texture::jpg, Texture::bmp, Texture::tiff})
        EXPECT_TRUE(is(png, format, 7));
    for (const Texture format : {Texture::pvr2, Texture::pvr2gz, Texture::pvr2ccz})
        EXPECT_TRUE(is(pvr, format, 0));
    for (const Texture format : {Texture::tga, Texture::pkm, Texture::ppm_ascii, Texture::ppm_binary})
        EXPECT_TRUE(is(universal, format, 0));
    EXPECT_EQ(ImageExporterPvr().fileName(), QStringLiteral("out.pvr"));
    EXPECT_EQ(ImageExporterUniversal().fileName(), QStringLiteral("out.png"));
    ImageExporterPng named;
    EXPECT_EQ(named.fileName(), QStringLiteral("out.png"));
    named.setFileName(QStringLiteral("a.png"));
    EXPECT_EQ(named.fileName(), QStringLiteral("a.png"));
}

TEST_F(ImageExporterTest, writesWhatTheSuffixSays) {
    ImageExporterPng exporter;
    for (const char* name : {"a.png", "b.PNG", "c.bmp", "d.tiff", "e.tif"}) {
        write(exporter, QString::fromLatin1(name));
        const QImage image(path(QString::fromLatin1(name)));
        EXPECT_EQ(image.convertToFormat(QImage::Format_ARGB32), pixels) << name;
        EXPECT_NEAR(image.dotsPerMeterX(), 2835, 1) << name;
    }
    EXPECT_EQ(content(QStringLiteral("a.png")), content(QStringLiteral("b.PNG")));
    EXPECT_TRUE(content(QStringLiteral("c.bmp")).startsWith("BM"));
    EXPECT_EQ(entries().size(), 5);
}

TEST_F(ImageExporterTest, takesTheJpgQualityForJpgNamesOnly) {
    ImageExporterPng exporter;
    const auto size = [&](const char* name, uint quality) {
        settings.setJpgQuality(quality);
        write(exporter, QString::fromLatin1(name));
        return content(QString::fromLatin1(name)).size();
    };
    EXPECT_LT(size("a.jpg", 5), size("b.jpg", 95));
    EXPECT_EQ(size("a.JPEG", 5), size("a.jpg", 5));
    EXPECT_EQ(size("a.png", 5), size("b.png", 95));
    EXPECT_EQ(size("a.jpg", 75), size("b.jpg", static_cast<uint>(-1))); // the toolkit's own choice
}

TEST_F(ImageExporterTest, refusesCompressedFormatsForPng) {
    for (int format = 0; format < 14; ++format) {
        settings.setOutputFormat(static_cast<Format>(format));
        const bool refused = (format >= 7 && format <= 10) || format >= 12;
        const auto [code, text] = failure(ImageExporterPng(), QStringLiteral("a.png"));
        EXPECT_EQ(code, refused ? 12 : 0) << format;
        EXPECT_EQ(text, refused ? QStringLiteral("This texture format can not be used with png/jpg/bmp.")
                                : QString());
    }
}

TEST_F(ImageExporterTest, tellsWhyAFileCantBeWritten) {
    touch(QStringLiteral("file"));
    touch(QStringLiteral("a.xyz"));
    const auto [code, text] = failure(ImageExporterPng(), QStringLiteral("file/a.png"));
    EXPECT_EQ(code, 12);
    EXPECT_TRUE(text.startsWith(
        QStringLiteral("Failed to write texture to file %1: ").arg(path(QStringLiteral("file/a.png")))));
    EXPECT_FALSE(text.endsWith(QStringLiteral(": ")));
    EXPECT_EQ(
        failure(ImageExporterPng(), QStringLiteral("a.xyz")),
        std::make_pair(12, QStringLiteral("Failed to write texture to file %1: Unsupported image format")
                               .arg(path(QStringLiteral("a.xyz")))));
    EXPECT_EQ(content(QStringLiteral("a.xyz")), "old"); // nothing half-written, nothing lost
    EXPECT_EQ(entries(), (QStringList{QStringLiteral("a.xyz"), QStringLiteral("file")}));
}

TEST_F(ImageExporterTest, noticesAFullDisk) {
    if (!QFile::exists(QStringLiteral("/dev/full")))
        GTEST_SKIP();
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/full"), path(QStringLiteral("a.png"))));
    settings.setTextureFileName(path(QStringLiteral("a.png")));
    for (int side : {40, 400}) { // within and beyond what the device buffers
        texture = sheet({side, side}, {placedSprite(noise(side, side, 1), {0, 0})});
        const auto [code, text] = publishFailure();
        EXPECT_EQ(code, 12);
        EXPECT_TRUE(text.endsWith(QStringLiteral("No space left on device"))) << qPrintable(text);
    }
    EXPECT_TRUE(QFile::exists(QStringLiteral("/dev/full")));
}

TEST_F(ImageExporterTest, savesThroughTheLibraryWithoutLeftovers) {
    settings.setPngOptimizationLevel(1);
    touch(QStringLiteral("a.png"));
    ImageExporterUniversal exporter;
    write(exporter, QStringLiteral("a.png"));
    settings.setTextureFormat(Texture::ppm_binary);
    write(exporter, QStringLiteral("b.ppm"));
    for (const char* name : {"a.png", "b.ppm"}) {
        const QImage image =
            QtUniversalImageLoader::ImageLoader::instance()->load(path(QString::fromLatin1(name)));
        EXPECT_EQ(image.convertToFormat(QImage::Format_ARGB32), pixels) << name;
    }
    EXPECT_EQ(entries(), (QStringList{QStringLiteral("a.png"), QStringLiteral("b.ppm")}));
}

TEST_F(ImageExporterTest, refusesForeignFormatsAndPlacesThroughTheLibrary) {
    touch(QStringLiteral("file"));
    settings.setTextureFormat(Texture::jpg);
    EXPECT_EQ(failure(ImageExporterUniversal(), QStringLiteral("a.jpg")),
              std::make_pair(12, QStringLiteral("ImageExporterUniversal can't write that format.")));
    for (const Texture format : {Texture::tga, Texture::pkm, Texture::ppm_ascii}) {
        settings.setTextureFormat(format);
        EXPECT_EQ(
            failure(ImageExporterUniversal(), QStringLiteral("file/a.tga")),
            std::make_pair(12, QStringLiteral("Failed to write %1").arg(path(QStringLiteral("file/a.tga")))));
    }
    EXPECT_EQ(failure(ImageExporterPvr(), QStringLiteral("file/a.pvr")),
              std::make_pair(
                  12, QStringLiteral("Failed to write file %1").arg(path(QStringLiteral("file/a.pvr")))));
    EXPECT_EQ(entries(), QStringList{QStringLiteral("file")});
}

TEST_F(ImageExporterTest, refusesWhatAPvrFileCantHold) {
    const auto refusal = [&](Format format, QSize size) {
        settings.setOutputFormat(format);
        texture = sheet(size);
        return failure(ImageExporterPvr(), QStringLiteral("a.pvr"));
    };
    EXPECT_EQ(refusal(Format::RGBA5555, {8, 8}),
              std::make_pair(14, QStringLiteral("Output format not supported by PVR exporter")));
    const auto squared = std::make_pair(
        14, QStringLiteral("PVRTC compression reqires squared textures. Please deactivate allow free size."));
    const auto power = std::make_pair(
        14, QStringLiteral("PVRTC reqires power of two (POT) textures. Please deactivate allow free size."));
    for (const Format format :
         {Format::PVRTC2, Format::PVRTC4, Format::PVRTC2_NOALPHA, Format::PVRTC4_NOALPHA}) {
        EXPECT_EQ(refusal(format, {512, 256}), squared);
        EXPECT_EQ(refusal(format, {300, 200}), squared);
        EXPECT_EQ(refusal(format, {300, 300}), power);
        EXPECT_NE(refusal(format, {64, 64}).first, 14);
    }
    EXPECT_NE(refusal(Format::ETC1, {300, 200}).first, 14);
}

TEST_F(ImageExporterTest, writeStepMakesFolderTellsAndWrites) {
    settings.setTextureFileName(path(QStringLiteral("new/deep/a.png")));
    QStringList told;
    writeTexture(settings, texture, [&](int level, const QString& text) {
        told += QString::number(level) + QLatin1Char(' ') + text;
    });
    EXPECT_EQ(told,
              QStringList{QStringLiteral("1 Writing sprite sheet to %1").arg(settings.textureFileName())});
    EXPECT_EQ(QImage(settings.textureFileName()).convertToFormat(QImage::Format_ARGB32), pixels);
}

TEST_F(ImageExporterTest, writeStepRemovesTheFileOfAFailure) {
    touch(QStringLiteral("a.png"));
    settings.setTextureFileName(path(QStringLiteral("a.png")));
    settings.setOutputFormat(Format::ALPHA_INTENSITY);
    EXPECT_EQ(publishFailure().second,
              QStringLiteral("This texture format can not be used with png/jpg/bmp."));
    EXPECT_TRUE(entries().isEmpty());
    touch(QStringLiteral("file"));
    settings.setTextureFileName(path(QStringLiteral("file/sub/a.png")));
    settings.setOutputFormat(Format::RGBA8888);
    EXPECT_EQ(publishFailure().first, 12);
    EXPECT_EQ(entries(), QStringList{QStringLiteral("file")});
}
