#include "FootprintStatistics.h"

#include "EigenBasis.h"

namespace pvrtc {

namespace {

constexpr float shortKernels[2][9] = {{-32, 8, 28, 64, 127, 64, 28, 8, -32},
                                      {8, 16, 32, 64, 127, 64, 32, 16, 8}};
constexpr float longKernels[2][17] = {{-24, -6, 7, 9, 12, 23, 29, 48, 80, 48, 29, 23, 12, 9, 7, -6, -24},
                                      {1, 1, 2, 4, 8, 16, 32, 64, 127, 64, 32, 16, 8, 4, 2, 1, 1}};

template <int Bits>
struct PixelWeights {
    float values[2][PixelWindow<Bits>::count];
};

/// The outer products of horizontal and vertical kernel, each divided by the product of their sums.
template <int Bits>
constexpr PixelWeights<Bits> pixelWeights() {
    using Window = PixelWindow<Bits>;
    PixelWeights<Bits> weights{};
    for (int kernel = 0; kernel < 2; ++kernel) {
        const float* across = Bits == 2 ? longKernels[kernel] : shortKernels[kernel];
        const float* down = shortKernels[kernel];
        float acrossSum = 0;
        float downSum = 0;
        for (int x = 0; x < Window::width; ++x)
            acrossSum += across[x];
        for (int y = 0; y < Window::height; ++y)
            downSum += down[y];
        for (int place = 0; place < Window::count; ++place)
            weights.values[kernel][place] =
                across[place % Window::width] * down[place / Window::width] / (acrossSum * downSum);
    }
    return weights;
}

/// Sums of weighted pixels and of their products.
struct Moments {
    Float4 sum{};
    Float4 products[4] = {};

    void add(Float4 weighted, Float4 pixel) {
        sum += weighted;
        for (int channel = 0; channel < 4; ++channel)
            products[channel] += weighted * pixel[channel];
    }
};

/// The pixels of a window from some origin on, as that keeps sums of squares small.
template <int Bits>
struct RelativePixels {
    explicit RelativePixels(const PixelWindow<Bits>& window) : origin(pixelFloats(window.pixels[0][0])) {
        for (int y = 0; y < PixelWindow<Bits>::height; ++y)
            for (int x = 0; x < PixelWindow<Bits>::width; ++x)
                values[y * PixelWindow<Bits>::width + x] = pixelFloats(window.pixels[y][x]) - origin;
    }
    Float4 origin;
    Float4 values[PixelWindow<Bits>::count];
};

/// Calls `visit` with each of the block's own pixels.
template <int Bits, class Visit>
void forOwnPixels(const RelativePixels<Bits>& pixels, Visit visit) {
    using Window = PixelWindow<Bits>;
    for (int y = Window::ownY; y < Window::ownY + pvrtcBlockHeight; ++y)
        for (int x = Window::ownX; x < Window::ownX + Window::blockWidth; ++x)
            visit(pixels.values[y * Window::width + x]);
}

template <int Bits>
void addMoments(const RelativePixels<Bits>& pixels, Moments (&moments)[WeightingCount]) {
    static constexpr PixelWeights<Bits> weights = pixelWeights<Bits>();
    for (int place = 0; place < PixelWindow<Bits>::count; ++place)
        for (const int kernel : {FirstKernel, SecondKernel})
            moments[kernel].add(pixels.values[place] * weights.values[kernel][place], pixels.values[place]);
    constexpr float share = 1.0F / (PixelWindow<Bits>::blockWidth * pvrtcBlockHeight);
    forOwnPixels(pixels, [&](Float4 pixel) { moments[OwnPixels].add(pixel * share, pixel); });
}

SymmetricMatrices covariances(const Moments (&moments)[WeightingCount]) {
    SymmetricMatrices matrices{};
    for (int weighting = 0; weighting < WeightingCount; ++weighting) {
        const Moments& from = moments[weighting];
        for (int a = 0; a < 4; ++a)
            for (int b = a; b < 4; ++b)
                matrices.entries[a][b][weighting] = from.products[a][b] - from.sum[a] * from.sum[b];
    }
    return matrices;
}

/// Extents of pixels along the axes of a basis.
class Extents {
public:
    explicit Extents(const ColorBasis& basis) {
        const auto& axes = basis.axes;
        for (int channel = 0; channel < 4; ++channel)
            m_columns[channel] =
                Float4{axes[0][channel], axes[1][channel], axes[2][channel], axes[3][channel]};
    }

    Float4 place(Float4 color) const {
        return (m_columns[0] * color[0] + m_columns[1] * color[1]) +
               (m_columns[2] * color[2] + m_columns[3] * color[3]);
    }
    void add(Float4 pixel) {
        const Float4 here = place(pixel);
        lowest = here < lowest ? here : lowest;
        highest = here > highest ? here : highest;
    }

    Float4 lowest = Float4{} + 1e9F;
    Float4 highest = Float4{} - 1e9F;

private:
    Float4 m_columns[4] = {};
};

template <int Bits>
void measureExtents(const RelativePixels<Bits>& pixels, Weighting weighting, ColorBasis& basis) {
    Extents extents(basis);
    if (weighting == OwnPixels)
        forOwnPixels(pixels, [&](Float4 pixel) { extents.add(pixel); });
    else
        for (const Float4& pixel : pixels.values)
            extents.add(pixel);
    const Float4 middle = extents.place(basis.mean);
    basis.lowest = extents.lowest - middle;
    basis.highest = extents.highest - middle;
    basis.mean += pixels.origin;
}

template <int Bits>
void measureChannels(const PixelWindow<Bits>& window, const RelativePixels<Bits>& pixels,
                     FootprintStatistics& statistics) {
    Float4 lowest{};
    Float4 highest{};
    for (const Float4& pixel : pixels.values) {
        lowest = pixel < lowest ? pixel : lowest;
        highest = pixel > highest ? pixel : highest;
    }
    statistics.lowest = lowest + pixels.origin;
    statistics.highest = highest + pixels.origin;
    for (const auto& line : window.pixels)
        for (const std::uint32_t pixel : line)
            statistics.transparentPixels += pixel >> 24U == 0 ? 1 : 0;
}

template <int Bits>
bool isFlat(const PixelWindow<Bits>& window) {
    std::uint32_t differences = 0;
    for (const auto& line : window.pixels)
        for (const std::uint32_t pixel : line)
            differences |= pixel ^ window.pixels[0][0];
    return differences == 0;
}

} // namespace

template <int Bits>
FootprintStatistics footprintStatistics(const PixelWindow<Bits>& window) {
    FootprintStatistics statistics{};
    statistics.flat = isFlat(window);
    if (statistics.flat) {
        statistics.lowest = statistics.highest = pixelFloats(window.pixels[0][0]);
        return statistics;
    }
    const RelativePixels<Bits> pixels(window);
    measureChannels(window, pixels, statistics);
    Moments moments[WeightingCount];
    addMoments(pixels, moments);
    const EigenBasis eigen = eigenBasis(covariances(moments));
    for (int weighting = 0; weighting < WeightingCount; ++weighting) {
        ColorBasis& basis = statistics.bases[weighting];
        basis.mean = moments[weighting].sum;
        int& mainAxis = statistics.mainAxis[weighting];
        for (int axis = 0; axis < 4; ++axis) {
            for (int channel = 0; channel < 4; ++channel)
                basis.axes[axis][channel] = eigen.vectors[axis][channel][weighting];
            if (eigen.values[axis][weighting] > eigen.values[mainAxis][weighting])
                mainAxis = axis;
        }
        measureExtents(pixels, static_cast<Weighting>(weighting), basis);
    }
    return statistics;
}

template FootprintStatistics footprintStatistics<2>(const PixelWindow<2>&);
template FootprintStatistics footprintStatistics<4>(const PixelWindow<4>&);

} // namespace pvrtc
