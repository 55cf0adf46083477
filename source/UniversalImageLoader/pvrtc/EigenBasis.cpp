#include "EigenBasis.h"

#include <algorithm>

namespace pvrtc {

namespace {

struct Rotation {
    Float4 tangent;
    Float4 cosine;
    Float4 sine;

    void apply(Float4& p, Float4& q) const {
        const Float4 before = p;
        p = cosine * before - sine * q;
        q = sine * before + cosine * q;
    }
};

/// The rotation that makes an entry beside the diagonal zero.
Rotation rotation(Float4 diagonalP, Float4 diagonalQ, Float4 entry) {
    constexpr float tiny = 1e-30F; // keeps 0 / 0 away
    const Float4 difference = diagonalQ - diagonalP;
    const Float4 size = difference < 0 ? -difference : difference;
    const Float4 tangentSize =
        entry * 2 / (size + squareRoots(difference * difference + entry * entry * 4) + tiny);
    const Float4 tangent = difference < 0 ? -tangentSize : tangentSize;
    const Float4 cosine = 1 / squareRoots(tangent * tangent + 1);
    return {tangent, cosine, tangent * cosine};
}

} // namespace

EigenBasis eigenBasis(SymmetricMatrices matrices) {
    constexpr int sweeps = 3;
    EigenBasis basis{};
    for (int k = 0; k < 4; ++k)
        basis.vectors[k][k] += 1;
    const auto entry = [&](int a, int b) -> Float4& {
        return matrices.entries[std::min(a, b)][std::max(a, b)];
    };
    for (int sweep = 0; sweep < sweeps; ++sweep)
        for (int p = 0; p < 3; ++p)
            for (int q = p + 1; q < 4; ++q) {
                const Rotation turn = rotation(entry(p, p), entry(q, q), entry(p, q));
                const Float4 shift = turn.tangent * entry(p, q);
                entry(p, p) -= shift;
                entry(q, q) += shift;
                entry(p, q) = Float4{};
                for (int k = 0; k < 4; ++k) {
                    if (k != p && k != q)
                        turn.apply(entry(k, p), entry(k, q));
                    turn.apply(basis.vectors[p][k], basis.vectors[q][k]);
                }
            }
    for (int k = 0; k < 4; ++k)
        basis.values[k] = entry(k, k);
    return basis;
}

} // namespace pvrtc
