#pragma once

#include "Simd.h"

namespace pvrtc {

/// Up to four symmetric matrices of 4 x 4, one in each lane.
struct SymmetricMatrices {
    Float4 entries[4][4]; ///< those with row <= column count
};

/// Their eigenvectors, unsorted: `vectors[k]` is the k-th one, component by component, of eigenvalue
/// `values[k]`.
struct EigenBasis {
    Float4 vectors[4][4];
    Float4 values[4];
};

/// Jacobi's method, a fixed number of sweeps.
EigenBasis eigenBasis(SymmetricMatrices matrices);

} // namespace pvrtc
