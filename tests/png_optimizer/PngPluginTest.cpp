#include "PngOptimizerTest.h"

#include "QPNGOptimizer.h"

#include <QLoggingCategory>

using PngFile::Trial;
using QtUniversalImageLoader::ImageLoaderOption;
using QtUniversalImageLoader::ImageLoaderPlugin;

TEST_F(PngOptimizerTest, takesItsOptions) {
    const QImage image = soft(0);
    const auto idat = [&](const Options& options) { return PngFile::chunk(saved(image, options), "IDAT"); };
    const auto best = [&](const std::vector<Trial>& trials, int windowBits = 0) {
        return PngFile::bestOf(toolkitFile(image), trials, ~std::size_t{0}, windowBits);
    };
    // Without a preset: what isn't told is as in preset 2, but the filter.
    EXPECT_EQ(idat({}), best({{5, 0, 9, 8}, {5, 1, 9, 8}, {5, 2, 1, 8}, {5, 3, 9, 8}}));
    EXPECT_EQ(idat({{QStringLiteral("CompressionLevel7"), false},
                    {QStringLiteral("MemoryLevel9"), 0},
                    {QStringLiteral("CompressionStrategy1"), true},
                    {QStringLiteral("CompressionLevelx"), true}}),
              best({{5, 1, 7, 9}}));
    EXPECT_EQ(idat({{QStringLiteral("FilterRangeBegin"), 3},
                    {QStringLiteral("FilterRangeEnd"), 4},
                    {QStringLiteral("CompressionStrategy0"), true}}),
              best({{3, 0, 9, 8}, {4, 0, 9, 8}}));
    EXPECT_EQ(idat({{QStringLiteral("ZlibWindowSize"), 13}, {QStringLiteral("CompressionStrategy0"), true}}),
              best({{5, 0, 9, 8}}, 13));
    // A preset widens what is told.
    EXPECT_EQ(idat({{QStringLiteral("PresetOptimization"), 2},
                    {QStringLiteral("CompressionLevel6"), true},
                    {QStringLiteral("FilterRangeBegin"), 4},
                    {QStringLiteral("FilterRangeEnd"), 4}}),
              best({{0, 0, 9, 8},
                    {0, 0, 6, 8},
                    {0, 1, 9, 8},
                    {0, 1, 6, 8},
                    {0, 2, 1, 8},
                    {0, 3, 9, 8},
                    {4, 0, 9, 8},
                    {4, 0, 6, 8},
                    {4, 1, 9, 8},
                    {4, 1, 6, 8},
                    {4, 2, 1, 8},
                    {4, 3, 9, 8},
                    {5, 0, 9, 8},
                    {5, 0, 6, 8},
                    {5, 1, 9, 8},
                    {5, 1, 6, 8},
                    {5, 2, 1, 8},
                    {5, 3, 9, 8}}));
    const auto type = [&](const QImage& picture, const char* key) {
        const PngFile::Header header = PngFile::header(saved(picture, {{QString::fromLatin1(key), true}}));
        return std::pair(header.colorType, header.bitDepth);
    };
    EXPECT_EQ(type(colors(3), "NeedColorTypeReduction"), std::pair(6, 8));
    EXPECT_EQ(type(colors(3), "NeedBitDepthReduction"), std::pair(3, 8));
    EXPECT_EQ(type(colors(3), "NeedPaletteReduction"), std::pair(3, 2));
}

TEST_F(PngOptimizerTest, saysWhatFailed) {
    const QString prefix = QStringLiteral("PngOptimizer: ");
    for (const char* name : {"sheet.PNG", "sheet", "sheet.png.tmp"}) {
        EXPECT_EQ(fault(path(name), soft(0)), prefix + QStringLiteral("Wrong extension"));
        EXPECT_FALSE(QFile::exists(path(name)));
    }
    EXPECT_EQ(fault(path(), QImage()), prefix + QStringLiteral("Failed to save file"));
    EXPECT_FALSE(QFile::exists(path()));
    EXPECT_EQ(fault(path("no/such/folder.png"), soft(0)),
              prefix + QStringLiteral("Failed to open file for writing: No such file or directory"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/dev/full"), path("full.png")));
    const QString unwritten = prefix + QStringLiteral("Failed to write optimized png data: ");
    EXPECT_EQ(fault(path("full.png"), soft(0)), unwritten + QStringLiteral("Can't write the output file"));
    EXPECT_EQ(fault(path("full.png"), noise({300, 300})),
              unwritten + QStringLiteral("Can't write the output file"));

    // What stood there stays.
    ASSERT_FALSE(saved(soft(0), 1).isEmpty());
    const QByteArray before = content(path());
    EXPECT_EQ(fault(path(), soft(1), {{QStringLiteral("CompressionLevel0"), true}}),
              unwritten + QStringLiteral("Iteration parameter(s) out of range"));
    EXPECT_EQ(fault(path(), soft(1),
                    {{QStringLiteral("NeedInterlacing"), true}, {QStringLiteral("NeedIDATRecording"), true}}),
              unwritten + QStringLiteral("Can't continue"));
    EXPECT_EQ(content(path()), before);
}

TEST_F(PngOptimizerTest, throwsAtNumbersOutOfRange) {
    const auto save = [&](const Options& options) {
        loader.save(path(), QStringLiteral("png"), soft(0), options);
    };
    for (const char* family :
         {"CompressionLevel10", "MemoryLevel10", "CompressionStrategy12", "MemoryLevel-1"})
        EXPECT_THROW(save({{QString::fromLatin1(family), true}}), IncorrectRange<int>) << family;
    using Range = QPair<DeltaFilter, DeltaFilter>;
    EXPECT_THROW(save({{QStringLiteral("FilterRangeEnd"), 4}}), IncorrectRange<Range>) << "the begin is 5";
    try {
        QPNGOptimizer(soft(0)).setFilterRange(FilterPaeth, FilterUp);
        FAIL();
    } catch (const QException& exception) {
        EXPECT_THROW(exception.raise(), IncorrectRange<Range>);
    }
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(PngOptimizerTest, isThePluginForWriting) {
    const ImageLoaderPlugin* plugin = nullptr;
    for (const ImageLoaderPlugin* candidate : loader.plugins())
        if (candidate->name() == QStringLiteral("PNG"))
            plugin = candidate;
    ASSERT_TRUE(plugin);
    EXPECT_EQ(loader.plugins().indexOf(const_cast<ImageLoaderPlugin*>(plugin)), loader.plugins().size() - 2);
    EXPECT_FALSE(plugin->canRead());
    QImage image;
    EXPECT_FALSE(plugin->load(path(), &image, nullptr, nullptr));
    EXPECT_EQ(plugin->formats().value(QStringLiteral("png")), QStringLiteral("PNG file format"));
    EXPECT_TRUE(loader.canRead(QStringLiteral("png")));

    const QList<ImageLoaderOption> options = plugin->optionList();
    ASSERT_EQ(options.size(), 39);
    EXPECT_EQ(options[0].key, QStringLiteral("PresetOptimization"));
    EXPECT_EQ(options[0].defaultValue, QVariant(-1));
    EXPECT_EQ(options[2].key, QStringLiteral("FilterRangeEnd"));
    EXPECT_EQ(options[2].type, ImageLoaderOption::Enumeration);
    ASSERT_EQ(options[2].values.size(), 6);
    EXPECT_EQ(options[2].values[4].key, QStringLiteral("FilterPaeth"));
    EXPECT_EQ(options[2].values[4].value, QVariant(4));
    EXPECT_EQ(options[7].key, QStringLiteral("NeedIDATRecording"));
    EXPECT_EQ(options[7].defaultValue, QVariant(false));
    EXPECT_EQ(options[21].key, QStringLiteral("MemoryLevel3"));
    EXPECT_EQ(options[21].name, QStringLiteral("Memory level 3"));
    EXPECT_EQ(options[37].description, QStringLiteral("Try 9 compression strategy"));
    EXPECT_EQ(options[38].key, QStringLiteral("ZlibWindowSize"));
}

TEST_F(PngOptimizerTest, tellsTheDebugChannelLineByLine) {
    static QStringList lines;
    lines.clear();
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=true"));
    const auto before =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type == QtDebugMsg)
                lines.append(text);
        });
    const QByteArray file = saved(colors(3), 2);
    qInstallMessageHandler(before);
    QLoggingCategory::setFilterRules(PngFile::quiet);
    EXPECT_EQ(lines.filter(QStringLiteral("\n")), QStringList());
    EXPECT_TRUE(lines.contains(QStringLiteral("Reducing image to 2 bits/pixel, 3 colors in palette")));
    EXPECT_EQ(lines.filter(QStringLiteral("  zc = ")).size(), 8 + 1);
    EXPECT_TRUE(lines.contains(QStringLiteral("Selecting parameters:")));
    EXPECT_TRUE(lines.contains(
        QStringLiteral("Output IDAT size = %1 bytes").arg(PngFile::chunk(file, "IDAT").size())));
}
