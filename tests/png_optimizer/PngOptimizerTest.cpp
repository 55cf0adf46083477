#include "Error.h"
#include "ImageLoader.h"
#include "PngFile.h"
#include "PngTrialSets.h"
#include "QPNGOptimizer.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <random>

using PngFile::Trial;
using QtUniversalImageLoader::ImageLoader;
using QtUniversalImageLoader::ImageLoaderOption;
using QtUniversalImageLoader::ImageLoaderPlugin;

namespace {

using Options = QHash<QString, QVariant>;

QImage drawn(QImage::Format format, const std::function<QRgb(int, int)>& pixel, QSize size = {61, 47}) {
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, pixel(x, y));
    QImage result = image.convertToFormat(format);
    result.setDotsPerMeterX(2835);
    result.setDotsPerMeterY(2835);
    result.setText(QStringLiteral("Author"), QStringLiteral("somebody"));
    return result;
}

/// So many colours in soft shapes.
QImage colors(int count, QImage::Format format = QImage::Format_ARGB32) {
    return drawn(format, [count](int x, int y) {
        const int number = (x * y / 3 + x) % count;
        return qRgba(number % 256, number / 256 * 40, 9, 255);
    });
}

QImage soft(int x) {
    return drawn(QImage::Format_ARGB32,
                 [x](int a, int b) { return qRgba(a * 4, b * 5, (a ^ b) + x, 255 - (a * b) % 256); });
}

QImage noise(QSize size) {
    std::mt19937 random(1);
    return drawn(
        QImage::Format_ARGB32, [&](int, int) { return QRgb(random()); }, size);
}

std::map<std::string, QImage> kinds() {
    const auto gray = [](int x, int y) { return qRgba(x + y, x + y, x + y, 255); };
    const auto wide = [](int x, int y) { return qRgba(x * 4, y * 5, x ^ y, x + y); };
    QImage deep = drawn(QImage::Format_RGBA64, wide);
    deep.setPixelColor(3, 3, QColor::fromRgba64(1, 2, 3, 40000));
    QImage profiled = drawn(QImage::Format_ARGB32, gray);
    profiled.setColorSpace(QColorSpace::SRgb);
    return {{"alpha", soft(0)},
            {"opaque", drawn(QImage::Format_ARGB32, [&](int x, int y) { return wide(x, y) | 0xFF000000U; })},
            {"grey", drawn(QImage::Format_ARGB32, gray)},
            {"grey with profile", profiled},
            {"2 colours", colors(2)},
            {"4 colours", colors(4)},
            {"16 colours", colors(16)},
            {"256 colours", colors(256)},
            {"257 colours", colors(257)},
            {"16 bit", deep},
            {"16 bit of 8", drawn(QImage::Format_RGBA64, wide)},
            {"grey 8", drawn(QImage::Format_Grayscale8, gray)},
            {"grey 16", drawn(QImage::Format_Grayscale16, wide)},
            {"indexed", colors(7, QImage::Format_Indexed8)},
            {"bitmap", colors(2, QImage::Format_Mono)},
            {"premultiplied", drawn(QImage::Format_ARGB32_Premultiplied, wide)},
            {"noise", noise({60, 50})},
            {"one pixel", drawn(QImage::Format_ARGB32, wide, {1, 1})}};
}

QByteArray toolkitFile(const QImage& image) {
    QBuffer buffer;
    EXPECT_TRUE(buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "PNG"));
    return buffer.data();
}

class PngOptimizerTest : public testing::Test {
protected:
    QString path(const char* name = "sheet.png") const { return folder.filePath(QString::fromLatin1(name)); }

    static QByteArray content(const QString& file) {
        QFile in(file);
        EXPECT_TRUE(in.open(QIODevice::ReadOnly));
        return in.readAll();
    }

    /// The file that the plug-in writes.
    QByteArray saved(const QImage& image, const Options& options) const {
        EXPECT_TRUE(loader.save(path(), QStringLiteral("png"), image, options));
        return content(path());
    }
    QByteArray saved(const QImage& image, int level) const {
        return saved(image, {{QStringLiteral("PresetOptimization"), level}});
    }

    /// What saving throws.
    QString fault(const QString& file, const QImage& image, const Options& options = {}) const {
        try {
            loader.save(file, QStringLiteral("png"), image, options);
        } catch (const Error& error) {
            EXPECT_EQ(error.code(), 12);
            return error.message();
        }
        return {};
    }

    QTemporaryDir folder;
    ImageLoader loader;
};

/// The trials of presets 2 to 7, in their order.
std::vector<Trial> presetTrials(int level) {
    std::vector<Trial> trials;
    const std::vector<int> memories = level % 2 ? std::vector<int>{9, 8} : std::vector<int>{8};
    for (int filter = 0; filter <= 5; ++filter) {
        if (level < 4 && filter > 0 && filter < 5)
            continue;
        for (int strategy = 0; strategy <= 3; ++strategy)
            for (int zlibLevel = 9; zlibLevel >= (level < 6 ? 9 : 1); --zlibLevel)
                for (const int memory : memories) {
                    const bool isUsed = strategy < 2 || zlibLevel == 9;
                    if (isUsed)
                        trials.push_back({filter, strategy, strategy == 2 ? 1 : zlibLevel, memory});
                }
    }
    return trials;
}

std::vector<std::array<int, 4>> numbersOf(const std::vector<PngTrial>& trials) {
    std::vector<std::array<int, 4>> numbers;
    for (const PngTrial& trial : trials)
        numbers.push_back({trial.filter, trial.strategy, trial.level, trial.memory});
    return numbers;
}

std::vector<std::array<int, 4>> numbersOf(const std::vector<Trial>& trials) {
    std::vector<std::array<int, 4>> numbers;
    for (const Trial& trial : trials)
        numbers.push_back({trial.filter, trial.strategy, trial.level, trial.memory});
    return numbers;
}

} // namespace

TEST_F(PngOptimizerTest, keepsPixelsAndTheRestWithEveryPreset) {
    for (const auto& [name, image] : kinds()) {
        const QByteArray plain = toolkitFile(image);
        for (int level = -1; level <= 8; ++level) {
            const QByteArray file = saved(image, level);
            EXPECT_EQ(PngFile::pixels(file), PngFile::pixels(plain)) << name << ' ' << level;
            EXPECT_EQ(QImage(path()).convertToFormat(QImage::Format_RGBA64),
                      QImage::fromData(plain).convertToFormat(QImage::Format_RGBA64))
                << name << ' ' << level;
            for (const char* type : {"pHYs", "tEXt", "iCCP"})
                EXPECT_EQ(PngFile::chunk(file, type), PngFile::chunk(plain, type)) << name << ' ' << type;
            if (file != plain) {
                EXPECT_EQ(PngFile::idatChunks(file), 1) << name << ' ' << level;
            }
        }
    }
}

// The rule as it is told: every trial written by libpng, one after the other.
TEST_F(PngOptimizerTest, writesTheWinnerOfTrialsMadeOneAfterTheOther) {
    for (const auto& [name, image] : kinds()) {
        const QByteArray plain = toolkitFile(image);
        for (int level = 2; level <= 7; ++level) {
            const QByteArray file = saved(image, level);
            const bool isReduced = PngFile::header(file).colorType != PngFile::header(plain).colorType ||
                                   PngFile::header(file).bitDepth != PngFile::header(plain).bitDepth;
            const QByteArray original = PngFile::chunk(plain, "IDAT");
            const QByteArray best =
                PngFile::bestOf(file, presetTrials(level),
                                isReduced ? ~std::size_t{0} : static_cast<std::size_t>(original.size()));
            const bool isAnew = isReduced || (!best.isNull() && best.size() < original.size());
            EXPECT_EQ(PngFile::chunk(file, "IDAT"), isAnew ? best : original) << name << ' ' << level;
            if (!isAnew) {
                EXPECT_EQ(file, plain) << name << ' ' << level;
            }
        }
    }
}

TEST_F(PngOptimizerTest, makesTheTrialsOfItsPresets) {
    for (int level = 2; level <= 7; ++level) {
        PngOptions options;
        options.optimLevel = static_cast<std::int16_t>(level);
        EXPECT_EQ(numbersOf(pngTrials(options, false)), numbersOf(presetTrials(level))) << level;
        options.filterSet = 1U << 5;
        EXPECT_EQ(numbersOf(pngTrials(options, true)), numbersOf(presetTrials(level))) << level;
    }
    EXPECT_EQ(presetTrials(2).size(), 8U);
    EXPECT_EQ(presetTrials(7).size(), 240U);
    PngOptions options;
    EXPECT_EQ(numbersOf(pngTrials(options, false)), numbersOf(presetTrials(2)));
    options.optimLevel = 99;
    EXPECT_EQ(numbersOf(pngTrials(options, false)), numbersOf(presetTrials(7)));
    for (const int level : {0, 1}) {
        options.optimLevel = static_cast<std::int16_t>(level);
        options.filterSet = level ? 1U << 5 : 0;
        EXPECT_THAT(numbersOf(pngTrials(options, false)), testing::ElementsAre(std::array{5, 1, 9, 8}));
        EXPECT_THAT(numbersOf(pngTrials(options, true)), testing::ElementsAre(std::array{0, 0, 9, 8}));
    }
}

TEST_F(PngOptimizerTest, makesOneTrialWithPreset1) {
    for (const auto& [name, image] : kinds()) {
        const QByteArray file = saved(image, 1);
        const PngFile::Header header = PngFile::header(file);
        const bool isIndexed = header.colorType == 3 || header.bitDepth < 8;
        if (file != toolkitFile(image)) {
            EXPECT_EQ(PngFile::chunk(file, "IDAT"),
                      PngFile::written(file, isIndexed ? Trial{0, 0, 9, 8} : Trial{5, 1, 9, 8}))
                << name;
        }
    }
    EXPECT_NE(saved(soft(0), 1), toolkitFile(soft(0)));
}

TEST_F(PngOptimizerTest, copiesWhatDoesNotGetSmaller) {
    // Several IDAT chunks, none of which is touched.
    const QImage image = noise({80, 70});
    ASSERT_GT(PngFile::idatChunks(toolkitFile(image)), 1);
    EXPECT_EQ(saved(image, 2), toolkitFile(image));
    for (const auto& [name, kind] : kinds())
        EXPECT_EQ(saved(kind, 0), toolkitFile(kind)) << name;
    EXPECT_EQ(saved(soft(0), {{QStringLiteral("NeedIDATRecording"), true}}), toolkitFile(soft(0)));
}

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

TEST_F(PngOptimizerTest, interlacesOnDemand) {
    for (const auto& [name, image] : kinds()) {
        const QByteArray file = saved(
            image, {{QStringLiteral("NeedInterlacing"), true}, {QStringLiteral("PresetOptimization"), 3}});
        EXPECT_EQ(PngFile::header(file).interlace, 1) << name;
        EXPECT_EQ(PngFile::pixels(file), PngFile::pixels(toolkitFile(image))) << name;
        EXPECT_EQ(PngFile::chunk(file, "IDAT"), PngFile::bestOf(file, presetTrials(3), ~std::size_t{0}))
            << name;
    }
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
