#include "AttemptKey.h"

#include "AlgorithmBasicSettings.h"
#include "AlgorithmMaxRectsSettings.h"
#include "AlgorithmSettings.h"
#include "PackerParameters.h"

#include <bit>

namespace {

QString algorithmText(const AlgorithmSettings* settings) {
    if (!settings)
        return {};
    if (settings->algorithm() == AlgorithmSettings::AlgorithmId::Basic)
        return QStringLiteral("Basic,%1,%2")
            .arg(settings->basic()->sortByName(), settings->basic()->orderName());
    return QStringLiteral("MaxRects,%1").arg(settings->maxRects()->heuristicName());
}

} // namespace

quint32 AttemptKey::mix(quint32 hash, quint32 value) { return std::rotl(hash, 1) ^ value; }

AttemptKey::AttemptKey(const PackerParameters& parameters)
    : m_allowRotation(parameters.allowRotation()), m_forceSquared(parameters.forceSquared()),
      m_forceWordAligned(parameters.forceWordAligned()), m_sizeConstraints(parameters.sizeConstraints()),
      m_size(parameters.size()), m_borderPadding(parameters.borderPadding()),
      m_shapePadding(parameters.shapePadding()), m_algorithm(algorithmText(parameters.algorithmSettings())),
      m_shapes(parameters.sharedShapes()), m_hash(computeHash()) {}

quint32 AttemptKey::computeHash() const {
    quint32 hash = m_allowRotation ? 1 : 0;
    for (int value : {m_size.width(), m_size.height(), m_borderPadding, m_shapePadding})
        hash = mix(hash, static_cast<quint32>(value));
    hash = mix(hash, qHash(m_algorithm));
    hash = mix(hash, m_forceSquared ? 1 : 0);
    hash = mix(hash, m_forceWordAligned ? 1 : 0);
    hash = mix(hash, static_cast<quint32>(m_sizeConstraints));
    // Width, height and name of every sprite would follow here. Rotation distributes over exclusive or, so
    // that the list's own hash, made once for all attempts, gives the same value.
    const size_t steps = 3 * m_shapes->all().size();
    hash = std::rotl(hash, static_cast<int>(steps % 32)) ^ m_shapes->hash();
    return hash == 0 ? 1 : hash;
}

bool AttemptKey::operator==(const AttemptKey& other) const {
    return m_hash == other.m_hash && m_allowRotation == other.m_allowRotation && m_size == other.m_size &&
           m_borderPadding == other.m_borderPadding && m_shapePadding == other.m_shapePadding &&
           m_forceSquared == other.m_forceSquared && m_forceWordAligned == other.m_forceWordAligned &&
           m_sizeConstraints == other.m_sizeConstraints && m_algorithm == other.m_algorithm &&
           (m_shapes == other.m_shapes || m_shapes->all() == other.m_shapes->all());
}
