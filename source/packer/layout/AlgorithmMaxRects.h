#pragma once

#include "AlgorithmBinPackBase.h"

/// Maximal rectangles bin packing: see MaxRectsBin.
class AlgorithmMaxRects : public AlgorithmBinPackBase {
public:
    AlgorithmMaxRects();

    std::unique_ptr<Algorithm> clone() const override;
    std::vector<PackRect> place(const PackerParameters& parameters, QSize bin) const override;
};
