#include "AttemptCache.h"

#include "AlgorithmRegistry.h"
#include "AlgorithmSettings.h"
#include "PackerParameters.h"

PackedResult AttemptCache::pack(const PackerParameters& parameters) {
    const AttemptKey key(parameters);
    const auto known = m_results.constFind(key);
    if (known != m_results.constEnd())
        return *known;
    const int id = static_cast<int>(parameters.algorithmSettings()->algorithm());
    const PackedResult result = AlgorithmRegistry::instance().find(id).pack(parameters);
    m_results.insert(key, result);
    return result;
}
