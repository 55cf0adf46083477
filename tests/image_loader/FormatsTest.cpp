#include "FormatsTest.h"
#include "SampleFiles.h"

using namespace QtUniversalImageLoader;

namespace {

QList<SampleFile> allSamples() {
    return tgaSamples() + ppmSamples() + psdSamples() + tiffSamples() + pvrSamples();
}

} // namespace

TEST_F(FormatsTest, tableHasItsOrder) {
    QStringList rows;
    for (const ImageLoaderPlugin* plugin : loader.plugins())
        if (plugin->name() != QLatin1String("qt-fallback"))
            rows += plugin->name() + QLatin1Char(' ') + plugin->extensions().join(QLatin1Char(',')) +
                    (plugin->canRead() ? QStringLiteral(" r") : QString()) +
                    (plugin->canWrite() ? QStringLiteral(" w ") : QStringLiteral(" ")) +
                    QString::number(plugin->optionList().size());
    EXPECT_EQ(rows.join(QLatin1Char('\n')).toStdString(),
              "TGA tga r w 0\nPPM ppm r w 1\nPKM pkm r w 0\nPSD psd r 0\n"
              "PVR pvrtc,pvr.gz,pvr.ccz,pvr r w 3\nTIFF tiff,tif r w 0\nPNG png w 39");
    const QStringList fallback = loader.plugins().constLast()->extensions();
    EXPECT_TRUE(fallback.contains(QStringLiteral("png")));
    for (const char* taken : {"tga", "ppm", "tif", "tiff"})
        EXPECT_FALSE(fallback.contains(QLatin1String(taken))) << taken;
    EXPECT_FALSE(loader.canWrite(QStringLiteral("psd")));
    const QMap<QString, QString> formats = loader.readableFormats();
    EXPECT_EQ(formats.value(QStringLiteral("tga")), QStringLiteral("Targa image format"));
    EXPECT_EQ(formats.value(QStringLiteral("pvr.gz")), QStringLiteral("PowerVR image format (gz)"));
    const ImageLoaderOption pixelType = loader.plugins()[4]->optionList().constFirst();
    EXPECT_EQ(pixelType.values.size(), 9);
    EXPECT_EQ(pixelType.values[5].value.toInt(), 26);
}

TEST_F(FormatsTest, readsEveryKind) {
    for (const SampleFile& sample : allSamples())
        EXPECT_TRUE(samePixels(readBytes(sample.name, sample.bytes), sample.picture))
            << qPrintable(sample.name);
}

// Pixels are the same whatever file they come from, the toolkit's among them.
TEST_F(FormatsTest, samePictureFromEveryFormat) {
    for (const bool alpha : {false, true}) {
        const QImage picture = samplePicture(alpha);
        const QStringList ours =
            alpha ? QStringList{QStringLiteral("tga"),    QStringLiteral("tif"),     QStringLiteral("pvr"),
                                QStringLiteral("pvr.gz"), QStringLiteral("pvr.ccz"), QStringLiteral("pvrtc")}
                  : QStringList{QStringLiteral("tga"), QStringLiteral("ppm"), QStringLiteral("tiff")};
        for (const QString& extension : ours) {
            const QString name = QStringLiteral("ours.") + extension;
            ASSERT_TRUE(loader.save(path(name), extension, picture, {{QStringLiteral("format"), 1}}));
            EXPECT_TRUE(samePixels(loader.load(path(name)), picture)) << qPrintable(name);
        }
        for (const char* extension : {"png", "bmp", "tif", "tiff", "webp", "ico", "ppm"}) {
            const QString name = QStringLiteral("toolkit.") + QLatin1String(extension);
            if (alpha && (name.endsWith(QLatin1String("ppm")) || name.endsWith(QLatin1String("bmp"))))
                continue;
            ASSERT_TRUE(picture.save(path(name), nullptr, 100)) << qPrintable(name);
            const QImage loaded = loader.load(path(name));
            EXPECT_TRUE(samePixels(loaded.convertToFormat(picture.format()), picture)) << qPrintable(name);
        }
    }
}

TEST_F(FormatsTest, tellsWhatItLearned) {
    const std::pair<QString, SampleFile> files[] = {{QStringLiteral("tga"), tgaSamples().first()},
                                                    {QStringLiteral("ppm"), ppmSamples().last()},
                                                    {QStringLiteral("psd"), psdSamples().first()},
                                                    {QStringLiteral("pvr"), pvrSamples()[2]},
                                                    {QStringLiteral("tiff"), tiffSamples().first()}};
    for (const auto& [format, sample] : files) {
        write(sample.name.toUpper(), sample.bytes);
        QString told;
        QImage image;
        QHash<QString, QVariant> options{{QStringLiteral("old"), 1}};
        EXPECT_TRUE(loader.load(path(sample.name.toUpper()), &told, &image, &options));
        EXPECT_TRUE(samePixels(image, sample.picture)) << qPrintable(sample.name);
        EXPECT_EQ(told, format);
        const bool emptied = format == QLatin1String("tga") || format == QLatin1String("pvr");
        EXPECT_EQ(options.contains(QStringLiteral("old")), !emptied) << qPrintable(format);
        if (format == QLatin1String("ppm")) {
            EXPECT_EQ(options.value(QStringLiteral("format")).toInt(), 1);
        }
        EXPECT_FALSE(loader.load(path(sample.name.toUpper()), nullptr, nullptr, nullptr));
    }
}

// A picture that is only half there is none, but for the formats that say otherwise.
TEST_F(FormatsTest, refusesWhatIsCut) {
    const LogCatcher log;
    for (const SampleFile& sample : allSamples()) {
        // Whose end isn't looked at: rows that may be missing, planes too many, the end mark of a stream of
        // known length, the place of the next picture. A map of colours the library can do without.
        const bool gz = sample.name.endsWith(QLatin1String(".gz"));
        const bool tiff = sample.name.endsWith(QLatin1String(".tif"));
        if (sample.name.endsWith(QLatin1String(".ppm")) ||
            sample.name.startsWith(QLatin1String("more_channels")) ||
            sample.name == QLatin1String("palette.tif"))
            continue;
        for (int size = sample.bytes.size() - (gz ? 11 : tiff ? 13 : 1); size >= 0; --size)
            ASSERT_TRUE(readBytes(sample.name, sample.bytes.left(size)).isNull())
                << qPrintable(sample.name) << " " << size;
    }
}
