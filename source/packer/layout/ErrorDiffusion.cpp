#include "ErrorDiffusion.h"

#include "NewImage.h"

#include <array>
#include <vector>

namespace {

/// Red, green, blue and alpha. Not cut to the range of bytes while errors arrive.
using Channels = std::array<float, 4>;
constexpr int alphaChannel = 3;

Channels channels(QRgb pixel) {
    return {static_cast<float>(qRed(pixel)), static_cast<float>(qGreen(pixel)),
            static_cast<float>(qBlue(pixel)), static_cast<float>(qAlpha(pixel))};
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

/// What is the same for all pixels of an image.
struct Task {
    ChannelTables tables;
    bool diffuseAlpha;
    bool premultiply;
};

QRgb reduced(const ChannelTables& tables, const Channels& c) {
    return tables.reduced(qRgba(byteOf(c[0]), byteOf(c[1]), byteOf(c[2]), byteOf(c[3])));
}

/// Reduces one pixel into `output` and returns its error. Products come before divisions: the order of single
/// precision operations is part of the result.
Channels reducePixel(const Task& task, const Channels& pixel, QRgb& output) {
    Channels error;
    if (task.premultiply) {
        const auto alpha = static_cast<float>(task.tables.alpha[byteOf(pixel[alphaChannel])]);
        const Channels target{pixel[0] * alpha / 255.0F, pixel[1] * alpha / 255.0F, pixel[2] * alpha / 255.0F,
                              alpha};
        output = reduced(task.tables, target);
        const Channels result = channels(output);
        for (size_t i = 0; i < 4; ++i)
            error[i] = result[i] - target[i];
        error[alphaChannel] = result[alphaChannel] - pixel[alphaChannel];
    } else {
        output = reduced(task.tables, pixel);
        const Channels result = channels(output);
        // The more transparent a pixel is, the less its colour shows.
        const float visible = static_cast<float>(byteOf(pixel[alphaChannel])) / 255.0F;
        for (size_t i = 0; i < 4; ++i)
            error[i] = (result[i] - pixel[i]) * visible;
        error[alphaChannel] = result[alphaChannel] - pixel[alphaChannel];
    }
    if (!task.diffuseAlpha)
        error[alphaChannel] = 0;
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
            for (const Share& share : Kernel::shares) {
                Channels& neighbour = reach[static_cast<size_t>(share.dy)][x + share.dx];
                for (size_t i = 0; i < 4; ++i)
                    neighbour[i] -= error[i] * share.weight / Kernel::divisor;
            }
        }
    }
}

} // namespace

QImage diffuseErrors(DiffusionMethod method, const QImage& image, PixelFormatCode code, bool diffuseAlpha,
                     bool premultiply) {
    const Task task{floatChannelTables(code), diffuseAlpha, premultiply};
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
