#include "AlgorithmRegistry.h"

#include "AlgorithmBasic.h"
#include "AlgorithmMaxRects.h"
#include "Error.h"

AlgorithmRegistry::AlgorithmRegistry() {
    add(std::make_unique<AlgorithmMaxRects>());
    add(std::make_unique<AlgorithmBasic>());
}

void AlgorithmRegistry::add(std::unique_ptr<const Algorithm> algorithm) {
    m_names.append(algorithm->name());
    m_algorithms.append(algorithm.get());
    m_owned.push_back(std::move(algorithm));
}

const AlgorithmRegistry& AlgorithmRegistry::instance() {
    static const AlgorithmRegistry registry;
    return registry;
}

const Algorithm& AlgorithmRegistry::find(int id) const {
    for (const Algorithm* algorithm : m_algorithms) {
        if (algorithm->id() == id)
            return *algorithm;
    }
    throw Error(Error::AlgorithmId, QStringLiteral("Unknown algorithm"));
}
