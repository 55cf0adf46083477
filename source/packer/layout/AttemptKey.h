#pragma once

#include "SpriteShapes.h"

#include <QSize>

class PackerParameters;

/// What makes two packing attempts the same. firstFitWins is no part of it: an attempt that was made with it
/// stands for the same sheet without it.
class AttemptKey {
public:
    explicit AttemptKey(const PackerParameters& parameters);

    /// Computed once, never 0.
    quint32 hash() const { return m_hash; }

    bool operator==(const AttemptKey& other) const;

    /// One step of the hash: rotated left by a bit, then combined with the next value.
    static quint32 mix(quint32 hash, quint32 value);

private:
    quint32 computeHash() const;

    bool m_allowRotation;
    bool m_forceSquared;
    bool m_forceWordAligned;
    int m_sizeConstraints;
    QSize m_size;
    int m_borderPadding;
    int m_shapePadding;
    QString m_algorithm;
    SharedShapes m_shapes;
    quint32 m_hash;
};

inline uint qHash(const AttemptKey& key, uint seed = 0) { return key.hash() ^ seed; }
