#pragma once

#include "Algorithm.h"

#include <QList>
#include <QStringList>

#include <vector>

/// The packers that there are. Made on first use, in a thread-safe way, and only read afterwards.
class AlgorithmRegistry {
public:
    static const AlgorithmRegistry& instance();

    /// Owned by the registry.
    const QList<const Algorithm*>& algorithms() const { return m_algorithms; }
    const QStringList& names() const { return m_names; }

    /// The packer of an AlgorithmSettings::AlgorithmId. Throws Error (AlgorithmId) if there is none.
    const Algorithm& find(int id) const;

private:
    AlgorithmRegistry();
    void add(std::unique_ptr<const Algorithm> algorithm);

    std::vector<std::unique_ptr<const Algorithm>> m_owned;
    QList<const Algorithm*> m_algorithms;
    QStringList m_names;
};
