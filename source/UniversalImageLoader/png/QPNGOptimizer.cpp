#include "QPNGOptimizer.h"

#include "OutputFile.h"
#include "PngOptimization.h"

#include <QBuffer>

#include <algorithm>

namespace {

std::uint32_t setOf(const QList<int>& values) {
    std::uint32_t set = 0;
    for (const int value : values) {
        if (value < 0 || value > 9)
            throw IncorrectRange<int>(value);
        set |= std::uint32_t{1} << value;
    }
    return set;
}

constexpr int defaultQuality = -1;
/// The same picture and chunks, quicker: its data isn't compressed.
constexpr int storedQuality = 100;

std::int16_t shortOf(int value) { return static_cast<std::int16_t>(std::clamp(value, -32768, 32767)); }

} // namespace

QPNGOptimizer::QPNGOptimizer(const QImage& image, int optimLevel) : QImage(image) {
    setPresetOptimization(optimLevel);
}

void QPNGOptimizer::setPresetOptimization(int level) { m_options.optimLevel = shortOf(level); }

void QPNGOptimizer::setInterlacing(bool interlaced) { m_options.interlace = interlaced ? 1 : 0; }

void QPNGOptimizer::setNoBitDepthReduction(bool off) { m_options.noBitDepthReduction = off; }

void QPNGOptimizer::setNoColorTypeReduction(bool off) { m_options.noColorTypeReduction = off; }

void QPNGOptimizer::setNoPaletteReduction(bool off) { m_options.noPaletteReduction = off; }

void QPNGOptimizer::setNoIdatRecoding(bool off) { m_options.noIdatRecoding = off; }

void QPNGOptimizer::setCompressionLevels(const QList<int>& levels) {
    m_options.compressionLevelSet = setOf(levels);
}

void QPNGOptimizer::setMemoryLevels(const QList<int>& levels) { m_options.memoryLevelSet = setOf(levels); }

void QPNGOptimizer::setCompressionStrategies(const QList<int>& strategies) {
    m_options.strategySet = setOf(strategies);
}

void QPNGOptimizer::setFilterRange(DeltaFilter first, DeltaFilter last) {
    if (first > last)
        throw IncorrectRange<QPair<DeltaFilter, DeltaFilter>>({first, last});
    m_options.filterSet = 0;
    // Values that are no filter's stand in the set too, for a set of nothing else is an error.
    for (int filter = std::max<int>(first, 0); filter <= std::min<int>(last, 31); ++filter)
        m_options.filterSet |= std::uint32_t{1} << filter;
}

void QPNGOptimizer::setWindowBits(int bits) { m_options.windowBits = shortOf(bits); }

PngOptions QPNGOptimizer::effectiveOptions() const {
    PngOptions options = m_options;
    if (options.optimLevel == 0)
        options.noBitDepthReduction = options.noColorTypeReduction = options.noPaletteReduction =
            options.noIdatRecoding = true;
    return options;
}

QByteArray QPNGOptimizer::toolkitFile(int quality) const {
    QBuffer buffer;
    return buffer.open(QIODevice::WriteOnly) && QImage::save(&buffer, "PNG", quality) ? buffer.data()
                                                                                      : QByteArray();
}

QString QPNGOptimizer::save(const QString& path) const {
    // The case matters on purpose: a texture's name in capitals is refused here.
    if (!path.endsWith(QStringLiteral(".png")))
        return QStringLiteral("PngOptimizer: Wrong extension");
    const QByteArray picture = toolkitFile(storedQuality);
    if (picture.isEmpty())
        return QStringLiteral("PngOptimizer: Failed to save file");
    OutputFile file(path);
    if (!file.open())
        return QStringLiteral("PngOptimizer: Failed to open file for writing: ") + file.errorString();
    QString fault = optimizePng(
        picture, [this] { return toolkitFile(defaultQuality); }, file.device(), effectiveOptions());
    // What the last flush reports is a failed write too.
    if (fault.isEmpty() && !file.commit())
        fault = QStringLiteral("Can't write the output file");
    if (!fault.isEmpty()) {
        file.cancel();
        return QStringLiteral("PngOptimizer: Failed to write optimized png data: ") + fault;
    }
    return QString();
}
