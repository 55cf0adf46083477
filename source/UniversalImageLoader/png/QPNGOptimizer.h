#pragma once

#include "IncorrectRange.h"
#include "PngOptions.h"

#include <QImage>
#include <QList>
#include <QPair>
#include <QString>

/// An image that saves itself as a smaller PNG file, after the method of OptiPNG: lossless, by trying.
/// Setters and save() are for one thread; save() itself uses all cores.
class QPNGOptimizer : public QImage {
public:
    /// `optimLevel` as in setPresetOptimization().
    explicit QPNGOptimizer(const QImage& image, int optimLevel = -1);

    /// 0 to 7: how many ways to deflate are tried. Below 0 counts as 2, but options given replace its sets
    /// instead of widening them; above 7 counts as 7. Level 0 reduces and tries nothing, whatever
    /// is set before and after.
    void setPresetOptimization(int level);

    void setInterlacing(bool interlaced); ///< Adam7

    // True switches the step off.
    void setNoBitDepthReduction(bool off);
    void setNoColorTypeReduction(bool off);
    void setNoPaletteReduction(bool off);
    void setNoIdatRecoding(bool off);

    // Values of zlib to try. A number outside 0 to 9 throws IncorrectRange<int>.
    void setCompressionLevels(const QList<int>& levels);
    void setMemoryLevels(const QList<int>& levels);
    void setCompressionStrategies(const QList<int>& strategies);

    /// Tries all filters from the first to the last. Throws
    /// IncorrectRange<QPair<DeltaFilter, DeltaFilter>> if the last stands before the first.
    void setFilterRange(DeltaFilter first, DeltaFilter last);

    /// Window of deflate as a power of two, 8 to 15; 0 is libpng's own choice.
    void setWindowBits(int bits);

    /// Writes the file, whose name has to end in ".png" in this case. The pixels and what the toolkit writes
    /// beside them are those of QImage::save(). Empty on success, else the message; the file of that name is
    /// then as it was before.
    QString save(const QString& path) const;

private:
    PngOptions effectiveOptions() const;
    QByteArray toolkitFile(int quality) const;

    PngOptions m_options;
};
