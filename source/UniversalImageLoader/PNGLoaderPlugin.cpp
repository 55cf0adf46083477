#include "PNGLoaderPlugin.h"

#include "Error.h"
#include "QPNGOptimizer.h"

#include <QCoreApplication>

namespace QtUniversalImageLoader {

namespace {

QString translated(const char* text) { return QCoreApplication::translate("PNGLoaderPlugin", text); }

ImageLoaderOption option(const char* key, const char* name, const char* description, int type,
                         const QVariant& defaultValue) {
    return {QString::fromLatin1(key), translated(name), translated(description), type, defaultValue, {}};
}

ImageLoaderOption flag(const char* key, const char* name, const char* description) {
    return option(key, name, description, ImageLoaderOption::Boolean, false);
}

ImageLoaderOption filter(const char* key, const char* name, const char* description) {
    struct Row {
        const char* key;
        const char* name;
        const char* description;
        DeltaFilter value;
    };
    static constexpr Row rows[] = {
        {"FilterNone", "Delta filter: None", "Scanline is transmitted unmodified", FilterNone},
        {"FilterLeft", "Delta filter: Left",
         "For each pixel transmit difference between current and prior pixel", FilterLeft},
        {"FilterUp", "Delta filter: Up", "For each pixel transmit difference between current and above pixel",
         FilterUp},
        {"FilterAverage", "Delta filter: Average",
         "Use values of left and above pixel to predict current pixel value", FilterAverage},
        {"FilterPaeth", "Delta filter: Paeth", "Use Paeth predictor to compute each pixel value",
         FilterPaeth},
        {"FilterAdaptive", "Delta filter: Adaptive", "Use different filter for each scanline",
         FilterAdaptive},
    };
    ImageLoaderOption result =
        option(key, name, description, ImageLoaderOption::Enumeration, static_cast<int>(FilterNone));
    for (const Row& row : rows)
        result.values.append({QString::fromLatin1(row.key), translated(row.name), translated(row.description),
                              static_cast<int>(row.value)});
    return result;
}

/// Ten keys that end in their number.
void appendFamily(QList<ImageLoaderOption>& list, const char* key, const char* name,
                  const char* description) {
    for (int n = 0; n <= 9; ++n)
        list.append({QString::fromLatin1(key) + QString::number(n),
                     translated(name).arg(n),
                     translated(description).arg(n),
                     ImageLoaderOption::Boolean,
                     false,
                     {}});
}

/// The numbers of a family's keys. Being there counts, whatever the value: this is how the keys are meant.
QList<int> numbersOf(const QHash<QString, QVariant>& options, const QString& family) {
    QList<int> numbers;
    for (auto option = options.begin(); option != options.end(); ++option) {
        if (!option.key().startsWith(family))
            continue;
        bool isNumber = false;
        const int number = option.key().mid(family.size()).toInt(&isNumber);
        if (isNumber)
            numbers.append(number);
    }
    return numbers;
}

void applyFlags(QPNGOptimizer& optimizer, const QHash<QString, QVariant>& options) {
    const auto isTrue = [&](const QString& key) { return options.value(key).toBool(); };
    optimizer.setInterlacing(isTrue(QStringLiteral("NeedInterlacing")));
    // A true "need" forbids the step: the names say the opposite, and stay what they are.
    optimizer.setNoBitDepthReduction(isTrue(QStringLiteral("NeedBitDepthReduction")));
    optimizer.setNoColorTypeReduction(isTrue(QStringLiteral("NeedColorTypeReduction")));
    optimizer.setNoPaletteReduction(isTrue(QStringLiteral("NeedPaletteReduction")));
    optimizer.setNoIdatRecoding(isTrue(QStringLiteral("NeedIDATRecording")));
}

void applySets(QPNGOptimizer& optimizer, const QHash<QString, QVariant>& options) {
    const auto filterOf = [&](const QString& key) {
        return static_cast<DeltaFilter>(options.value(key, static_cast<int>(FilterAdaptive)).toInt());
    };
    optimizer.setFilterRange(filterOf(QStringLiteral("FilterRangeBegin")),
                             filterOf(QStringLiteral("FilterRangeEnd")));
    optimizer.setCompressionLevels(numbersOf(options, QStringLiteral("CompressionLevel")));
    optimizer.setMemoryLevels(numbersOf(options, QStringLiteral("MemoryLevel")));
    optimizer.setCompressionStrategies(numbersOf(options, QStringLiteral("CompressionStrategy")));
}

} // namespace

PNGLoaderPlugin::PNGLoaderPlugin()
    : ImageLoaderPlugin({QStringLiteral("png")}, QStringLiteral("PNG"), true) {}

bool PNGLoaderPlugin::save(const QString& path, const QImage& image,
                           const QHash<QString, QVariant>& options) const {
    QPNGOptimizer optimizer(image);
    optimizer.setPresetOptimization(options.value(QStringLiteral("PresetOptimization"), -1).toInt());
    optimizer.setWindowBits(options.value(QStringLiteral("ZlibWindowSize"), 0).toInt());
    applyFlags(optimizer, options);
    applySets(optimizer, options);
    const QString fault = optimizer.save(path);
    if (!fault.isEmpty())
        throw Error(Error::TextureFile, fault);
    return true;
}

bool PNGLoaderPlugin::load(const QString&, QImage*, QString*, QHash<QString, QVariant>*) const {
    return false;
}

QList<ImageLoaderOption> PNGLoaderPlugin::optionList() const {
    QList<ImageLoaderOption> list = {
        option("PresetOptimization", "Preset Optimization", "Preset optimization level (-1 == disabled)",
               ImageLoaderOption::Integer, -1),
        filter("FilterRangeBegin", "Delta filters range begin", "First filter to use"),
        filter("FilterRangeEnd", "Delta filters range end", "Last filter to use"),
        flag("NeedInterlacing", "Need interlacing", "Create interlaced image"),
        flag("NeedBitDepthReduction", "Need bit depth reduction", "Reduce bit depth of image"),
        flag("NeedColorTypeReduction", "Need color type reduction", "Reduce color type"),
        flag("NeedPaletteReduction", "Need palette reduction", "Reduce palette of image"),
        flag("NeedIDATRecording", "Need IDAT recording", "Create new IDAT recording"),
    };
    appendFamily(list, "CompressionLevel", "Compression level %1", "Try %1 compression level");
    appendFamily(list, "MemoryLevel", "Memory level %1", "Try %1 memory level");
    appendFamily(list, "CompressionStrategy", "Compression strategy %1", "Try %1 compression strategy");
    list.append(option("ZlibWindowSize", "Zlib window size",
                       "Window size for deflate compression (use default if set to 0)",
                       ImageLoaderOption::Integer, 0));
    return list;
}

QMap<QString, QString> PNGLoaderPlugin::formats() const {
    return {{QStringLiteral("png"), QStringLiteral("PNG file format")}};
}

} // namespace QtUniversalImageLoader
