#include "SizeSearch.h"

#include "AlgorithmSettings.h"
#include "Error.h"
#include "PixelFormats.h"

#include <algorithm>
#include <bit>

namespace {

using OutputFormat = SettingsBase::OutputFormat;
using SizeConstraints = AlgorithmSettings::SizeConstraints;

bool isTwoBytesWide(OutputFormat format) {
    return format == OutputFormat::RGBA4444 || format == OutputFormat::RGB565 ||
           format == OutputFormat::RGBA5551 || format == OutputFormat::ALPHA_INTENSITY;
}

/// Throws if a side that the user fixed isn't what it has to become.
void checkFixed(int fixed, int side, const QString& what) {
    if (fixed > 0 && fixed != side)
        throw Error(Error::Parse, QStringLiteral("Fixed size %1").arg(what));
}

/// A side below 1 stays as it is.
int reduceToConstraint(int side, SizeConstraints constraint) {
    const auto value = static_cast<unsigned>(std::max(side, 0));
    if (constraint == SizeConstraints::POT)
        return static_cast<int>(std::bit_floor(value));
    if (constraint == SizeConstraints::NPOT && std::has_single_bit(value))
        return side - 1;
    return side;
}

void applyConstraint(QSize& size, QSize fixed, SizeConstraints constraint) {
    if (constraint == SizeConstraints::AnySize)
        return;
    const QString name =
        constraint == SizeConstraints::POT ? QStringLiteral("POT.") : QStringLiteral("NPOT.");
    size.setWidth(reduceToConstraint(size.width(), constraint));
    checkFixed(fixed.width(), size.width(),
               QStringLiteral("width is in conflict with size constraint ") + name);
    size.setHeight(reduceToConstraint(size.height(), constraint));
    checkFixed(fixed.height(), size.height(),
               QStringLiteral("height is in conflict with size constraint ") + name);
}

void applySquare(QSize& size, QSize fixed) {
    if (size.width() == size.height())
        return;
    if (fixed.width() > 0 || fixed.height() > 0)
        throw Error(Error::Parse,
                    QStringLiteral("Fixed size width/height is in conflict with force squared"));
    const int side = std::min(size.width(), size.height());
    size = QSize(side, side);
}

} // namespace

QSize SizeSearch::normalizeSize(QSize size) const {
    const QSize fixed = m_input.fixedSize;
    const auto format = static_cast<OutputFormat>(m_input.outputFormat);
    const int factor = std::max(1, m_input.baseFactor);
    if (fixed.width() > 0)
        size.setWidth(fixed.width());
    if (fixed.height() > 0)
        size.setHeight(fixed.height());
    // One rule can undo another. Every rule only takes away, so this ends.
    while (size.width() >= 1 && size.height() >= 1) {
        const QSize before = size;
        applyConstraint(size, fixed, static_cast<SizeConstraints>(m_input.sizeConstraints));
        if (m_input.forceWordAligned && isTwoBytesWide(format)) {
            size.setWidth(size.width() - size.width() % 2);
            checkFixed(fixed.width(), size.width(),
                       QStringLiteral("width is in conflict with force word aligned textures."));
        }
        if (m_input.forceSquared || isPvrtcFormat(format))
            applySquare(size, fixed);
        size = QSize(size.width() - size.width() % factor, size.height() - size.height() % factor);
        if (size == before)
            return size;
    }
    return {0, 0};
}
