#include "AttemptCache.h"

#include "AlgorithmRegistry.h"
#include "AlgorithmSettings.h"
#include "PackerParameters.h"

PackedResult AttemptCache::pack(const PackerParameters& parameters) {
    const AttemptKey key(parameters);
    if (const auto known = find(key, parameters.completeOnly()))
        return *known;
    const int id = static_cast<int>(parameters.algorithmSettings()->algorithm());
    PackedResult result = parameters.resultAhead() ? *parameters.resultAhead()
                                                   : AlgorithmRegistry::instance().find(id).pack(parameters);
    if (!parameters.ahead())
        store(key, result);
    return result;
}

int AttemptCache::size() const {
    const std::lock_guard lock(m_mutex);
    return m_results.size();
}

std::optional<PackedResult> AttemptCache::find(const AttemptKey& key, bool completeOnly) const {
    const std::lock_guard lock(m_mutex);
    const auto known = m_results.constFind(key);
    if (known != m_results.constEnd())
        return *known;
    if (completeOnly && m_givenUp.contains(key))
        return PackedResult();
    return std::nullopt;
}

void AttemptCache::store(const AttemptKey& key, const PackedResult& result) {
    const std::lock_guard lock(m_mutex);
    if (result.isEmpty()) {
        m_givenUp.insert(key);
        return;
    }
    m_givenUp.remove(key);
    m_results.insert(key, result);
}
