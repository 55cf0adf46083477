#pragma once

#include "Algorithm.h"
#include "PackRect.h"

#include <QSize>

#include <vector>

/// A packer that places bare rectangles; this base turns them into a result.
class AlgorithmBinPackBase : public Algorithm {
public:
    PackedResult pack(const PackerParameters& parameters) const override;

    /// Places rectangles of the sprites' padded sizes into a bin of the given size, in pixels. A rectangle
    /// isn't tied to a sprite but by its size. Sides of the bin below 1 hold nothing. If only a complete
    /// layout is of use, any smaller number of rectangles may stand for none.
    virtual std::vector<PackRect> place(const PackerParameters& parameters, QSize bin) const = 0;

protected:
    using Algorithm::Algorithm;
};
