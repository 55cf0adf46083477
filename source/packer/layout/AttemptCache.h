#pragma once

#include "AttemptKey.h"
#include "PackedResult.h"

#include <QHash>
#include <QSet>

#include <mutex>
#include <optional>

/// Every packing attempt that was made so far. Never cleared: a preview of the same sprites repeats none.
class AttemptCache {
public:
    /// The result of packing with the parameters: the stored one, or that of a new attempt, which is then
    /// stored unless it was made ahead. Of attempts that were given up it is only remembered that they hold
    /// not all sprites. Throws Error (AlgorithmId) for an algorithm that isn't registered. May be called by
    /// several threads.
    PackedResult pack(const PackerParameters& parameters);

    /// Number of stored results.
    int size() const;

private:
    std::optional<PackedResult> find(const AttemptKey& key, bool completeOnly) const;
    void store(const AttemptKey& key, const PackedResult& result);

    mutable std::mutex m_mutex;
    QHash<AttemptKey, PackedResult> m_results;
    QSet<AttemptKey> m_givenUp; ///< attempts without a result
};
