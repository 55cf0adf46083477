#include "ErrorDiffusion.h"

#include "NewImage.h"

#include <algorithm>
#include <array>
#include <vector>

namespace {

/// Red, green, blue and alpha. Not cut to the range of bytes while errors arrive. A vector of the compiler,
/// since one pixel's four channels are all that there is to do at once: each pixel waits for the one before.
using Channels [[gnu::vector_size(16)]] = float;
using Bytes [[gnu::vector_size(16)]] = int;
constexpr int alphaChannel = 3;

Channels channels(QRgb pixel) {
    return Channels{static_cast<float>(qRed(pixel)), static_cast<float>(qGreen(pixel)),
                    static_cast<float>(qBlue(pixel)), static_cast<float>(qAlpha(pixel))};
}

/// byteOf() for four channels.
Bytes bytesOf(Channels value) {
    const Channels low{};
    const Channels high = low + 255.0F;
    value = value > low ? value : low;
    value = value < high ? value : high;
    return __builtin_convertvector(value + 0.5F, Bytes);
}

/// One receiver of an error, relative to the pixel that made it.
struct Share {
    int dx, dy;
    float weight;
};

/// Robert W. Floyd and Louis Steinberg.
struct FloydSteinbergKernel {
    static constexpr float divisor = 16;
    static constexpr std::array<Share, 4> shares{{{1, 0, 7}, {-1, 1, 3}, {0, 1, 5}, {1, 1, 1}}};
};

/// Bill Atkinson. A quarter of the error goes nowhere.
struct AtkinsonKernel {
    static constexpr float divisor = 8;
    static constexpr std::array<Share, 6> shares{
        {{1, 0, 1}, {2, 0, 1}, {-1, 1, 1}, {0, 1, 1}, {1, 1, 1}, {0, 2, 1}}};
};

/// The rows that errors can still reach, with room on both sides for what falls off the image.
class Rows {
public:
    explicit Rows(int width) {
        for (std::vector<Channels>& row : m_rows)
            row.resize(static_cast<size_t>(width) + margin + 2);
    }

    Channels* row(int y) { return m_rows[static_cast<size_t>(y) % m_rows.size()].data() + margin; }

    void load(const QImage& image, int y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        Channels* to = row(y);
        for (int x = 0; x < image.width(); ++x)
            to[x] = channels(line[x]);
    }

private:
    static constexpr int margin = 1;
    std::array<std::vector<Channels>, 3> m_rows;
};

/// What is the same for all pixels of an image. The tables stand as floats, so that no conversion is in the
/// way.
struct Task {
    explicit Task(const ChannelTables& tables, bool alphaToo, bool multiply)
        : diffuseAlpha(alphaToo), premultiply(multiply) {
        const ReductionTable* const bytes[]{&tables.red, &tables.green, &tables.blue, &tables.alpha};
        for (size_t channel = 0; channel < 4; ++channel)
            std::copy(bytes[channel]->begin(), bytes[channel]->end(), levels[channel].begin());
    }

    Channels reduced(const Channels& value) const {
        const Bytes bytes = bytesOf(value);
        return Channels{levels[0][bytes[0]], levels[1][bytes[1]], levels[2][bytes[2]], levels[3][bytes[3]]};
    }

    std::array<std::array<float, 256>, 4> levels;
    bool diffuseAlpha;
    bool premultiply;
};

/// Reduces one pixel into `output` and returns its error. Products come before divisions: the order of single
/// precision operations is part of the result.
Channels reducePixel(const Task& task, const Channels& pixel, QRgb& output) {
    Channels result;
    Channels error;
    if (task.premultiply) {
        const float alpha = task.levels[alphaChannel][byteOf(pixel[alphaChannel])];
        Channels target = pixel * alpha / 255.0F;
        target[alphaChannel] = alpha;
        result = task.reduced(target);
        error = result - target;
    } else {
        result = task.reduced(pixel);
        // The more transparent a pixel is, the less its colour shows.
        const float visible = static_cast<float>(byteOf(pixel[alphaChannel])) / 255.0F;
        error = (result - pixel) * visible;
    }
    error[alphaChannel] = task.diffuseAlpha ? result[alphaChannel] - pixel[alphaChannel] : 0;
    output = qRgba(static_cast<int>(result[0]), static_cast<int>(result[1]), static_cast<int>(result[2]),
                   static_cast<int>(result[3]));
    return error;
}

template <class Kernel>
void diffuse(const Task& task, const QImage& image, QImage& result) {
    Rows rows(image.width());
    const int height = image.height();
    for (int y = 0; y < qMin(2, height); ++y)
        rows.load(image, y);
    for (int y = 0; y < height; ++y) {
        if (y + 2 < height)
            rows.load(image, y + 2);
        const std::array<Channels*, 3> reach{rows.row(y), rows.row(y + 1), rows.row(y + 2)};
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const Channels error = reducePixel(task, reach[0][x], line[x]);
            for (const Share& share : Kernel::shares)
                reach[static_cast<size_t>(share.dy)][x + share.dx] -= error * share.weight / Kernel::divisor;
        }
    }
}

} // namespace

QImage diffuseErrors(DiffusionMethod method, const QImage& image, PixelFormatCode code, bool diffuseAlpha,
                     bool premultiply) {
    const Task task(floatChannelTables(code), diffuseAlpha, premultiply);
    if (image.isNull())
        return {};
    const QImage source = toArgb32(image);
    QImage result = newImage(source.size());
    if (method == DiffusionMethod::Atkinson || method == DiffusionMethod::AtkinsonAlpha)
        diffuse<AtkinsonKernel>(task, source, result);
    else
        diffuse<FloydSteinbergKernel>(task, source, result);
    return result;
}
