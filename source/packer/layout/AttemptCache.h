#pragma once

#include "AttemptKey.h"
#include "PackedResult.h"

#include <QHash>

/// Every packing attempt that was made so far. Never cleared: a preview of the same sprites repeats none.
/// Belongs to the worker thread.
class AttemptCache {
public:
    /// The result of packing with the parameters: the stored one, or that of a new attempt, which is then
    /// stored. Throws Error (AlgorithmId) for an algorithm that isn't registered.
    PackedResult pack(const PackerParameters& parameters);

    /// Number of stored attempts.
    int size() const { return m_results.size(); }

private:
    QHash<AttemptKey, PackedResult> m_results;
};
