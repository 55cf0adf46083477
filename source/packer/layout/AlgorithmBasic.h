#pragma once

#include "Algorithm.h"

/// A row packer for tile maps and atlases: sprites in the order of a sort key, left to right, top to bottom.
/// Never rotates.
class AlgorithmBasic : public Algorithm {
public:
    AlgorithmBasic();

    std::unique_ptr<Algorithm> clone() const override;
    PackedResult pack(const PackerParameters& parameters) const override;
};
