#include "PngOptimization.h"

#include "Error.h"
#include "Meanwhile.h"
#include "PngReader.h"
#include "PngReductions.h"
#include "PngTrials.h"
#include "PngWriter.h"

#include <algorithm>
#include <limits>
#include <new>
#include <optional>

namespace {

[[noreturn]] void fail(const QString& text) { throw Error(Error::TextureFile, text); }

unsigned long printable(std::size_t value) { return static_cast<unsigned long>(value); }

class Optimization {
public:
    Optimization(const QByteArray& picture, const PngOptions& options, PngLog& log)
        : m_file(picture), m_options(options), m_log(log) {}

    void run(const PngSource& original, QIODevice& output) {
        m_picture = readPng(m_file, m_options, m_log, m_input);
        prepare();
        const bool isIndexed = m_picture.hasPalette() || m_picture.bitDepth < 8;
        if (!m_options.noIdatRecoding)
            m_trials = pngTrials(m_options, isIndexed);
        // Made meanwhile: the trials are worth what they are without it.
        std::optional<Meanwhile<QByteArray>> coming;
        if (!m_needsNewIdat)
            coming.emplace(original);
        tryAll();
        if (coming)
            compareWith(coming->take());
        m_log.print("Input IDAT size = %lu bytes\n", printable(m_input.idatSize));
        m_log.print("Input file size = %lu bytes\n", printable(m_input.fileSize));
        logTrials();
        const qint64 begin = output.pos();
        if (m_needsNewIdat)
            writePng(output, m_picture, m_best.idat);
        else
            copyPng(output, m_original);
        logSizes(output.pos() - begin);
    }

private:
    unsigned reductions() const {
        unsigned mask = ReduceAll;
        if (m_options.noBitDepthReduction)
            mask &= ~ReduceBitDepth;
        if (m_options.noColorTypeReduction)
            mask &= ~ReduceColorType;
        if (m_options.noPaletteReduction)
            mask &= ~ReducePalette;
        // What holds for one frame may not hold for the next.
        if (m_options.noIdatRecoding || m_input.isSigned || m_input.isAnimated)
            mask = 0;
        // Grey pictures can't have a colour profile of red, green and blue: readers would leave it out.
        if (hasProfile())
            mask &= ~(ReduceRgbToGray | ReducePaletteToGray);
        return mask;
    }

    bool hasProfile() const {
        return std::any_of(m_picture.beforePalette.begin(), m_picture.beforePalette.end(),
                           [](const PngChunk& chunk) { return chunk.type == "iCCP"; });
    }

    void prepare() {
        if (m_input.isSigned && !m_options.force)
            fail(QStringLiteral("Can't optimize digitally-signed files"));
        if (m_input.isAnimated)
            m_log.print("Warning: Animated pictures are not reduced\n");
        if (reducePicture(m_picture, reductions(), m_options, m_log)) {
            m_needsNewIdat = true;
            m_log.print("Reducing image to %s\n", qUtf8Printable(pngTypeText(m_picture)));
        }
        // The frames of an animation share the type of interlacing.
        if (m_options.interlace >= 0 && m_options.interlace != m_picture.interlace && !m_input.isAnimated) {
            m_picture.interlace = m_options.interlace;
            m_needsNewIdat = true;
        }
        if (m_needsNewIdat && m_options.noIdatRecoding)
            fail(QStringLiteral("Can't continue"));
    }

    void tryAll() {
        m_isMeasured = m_trials.size() > 1 || !m_needsNewIdat;
        if (!m_trials.empty())
            m_best = runPngTrials(m_picture, m_trials, m_options.windowBits,
                                  std::numeric_limits<std::size_t>::max());
    }

    /// A copy of the original unless the best trial is smaller.
    void compareWith(const QByteArray& original) {
        m_original = original;
        m_input.fileSize = static_cast<std::size_t>(original.size());
        m_input.idatSize = 0;
        for (const PngChunk& chunk : splitPng(original))
            if (chunk.type == "IDAT")
                m_input.idatSize += chunk.data.size();
        m_needsNewIdat = m_best.best && m_picture.colorChunkBytes() + m_best.idat.size() <
                                            m_input.colorChunkBytes + m_input.idatSize;
    }

    void logTrials() {
        if (m_isMeasured)
            m_log.print("\nTrying:\n");
        for (std::size_t i = 0; m_isMeasured && i < m_trials.size(); ++i) {
            m_log.print("  zc = %d  zm = %d  zs = %d  f = %d", m_trials[i].level, m_trials[i].memory,
                        m_trials[i].strategy, m_trials[i].filter);
            if (m_best.sizes[i])
                m_log.print("\t\tIDAT size = %lu\n", printable(*m_best.sizes[i]));
            else
                m_log.print(m_options.verbose ? "\t\tIDAT too big\n" : "\n");
        }
        if (!m_needsNewIdat)
            return;
        const PngTrial& winner = m_trials[*m_best.best];
        m_log.print("\nSelecting parameters:\n  zc = %d  zm = %d  zs = %d  f = %d\n", winner.level,
                    winner.memory, winner.strategy, winner.filter);
    }

    void logSizes(qint64 fileSize) {
        const std::size_t idat = m_needsNewIdat ? m_best.idat.size() : m_input.idatSize;
        const double gain = static_cast<double>(m_input.fileSize) - static_cast<double>(fileSize);
        m_log.print("\nOutput IDAT size = %lu bytes", printable(idat));
        m_log.print("\nOutput file size = %lu bytes (", static_cast<unsigned long>(fileSize));
        m_log.print("%.0f bytes = %.2f%% decrease)\n", gain,
                    100 * gain / static_cast<double>(m_input.fileSize));
    }

    const QByteArray& m_file;
    const PngOptions& m_options;
    PngLog& m_log;
    PngInput m_input;
    PngPicture m_picture;
    QByteArray m_original;
    std::vector<PngTrial> m_trials;
    PngTrialsResult m_best;
    bool m_needsNewIdat = false;
    bool m_isMeasured = false;
};

} // namespace

QString optimizePng(const QByteArray& picture, const PngSource& original, QIODevice& output,
                    const PngOptions& options) {
    PngLog log;
    QString fault;
    try {
        Optimization(picture, options, log).run(original, output);
    } catch (const Error& error) {
        fault = error.message();
    } catch (const std::bad_alloc&) {
        fault = QStringLiteral("Out of memory");
    }
    if (!fault.isEmpty())
        log.print("Error: %s\n", qUtf8Printable(fault));
    return fault;
}

QString optimizePng(const QByteArray& file, QIODevice& output, const PngOptions& options) {
    return optimizePng(
        file, [&file] { return file; }, output, options);
}
