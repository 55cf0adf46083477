#pragma once

#include <QString>

#include <memory>

class PackedResult;
class PackerParameters;

/// A way of placing sprites on a sheet of a given size. Objects hold no state of an attempt: the registered
/// ones are shared by all threads.
class Algorithm {
public:
    virtual ~Algorithm();

    virtual std::unique_ptr<Algorithm> clone() const = 0;

    /// One attempt: places the sprites of the parameters on a sheet of their size. What doesn't fit ends in
    /// the result's unplaced list; nothing is thrown. Empty only if the parameters ask for a complete layout
    /// and there is none. May be called by several threads.
    virtual PackedResult pack(const PackerParameters& parameters) const = 0;

    /// An AlgorithmSettings::AlgorithmId.
    int id() const { return m_id; }
    const QString& name() const { return m_name; }
    const QString& displayName() const { return m_displayName; }
    /// A sentence for the user.
    const QString& description() const { return m_description; }

protected:
    Algorithm(int id, const QString& name, const QString& description);
    Algorithm(const Algorithm& other) = default;

private:
    int m_id;
    QString m_name;
    QString m_displayName;
    QString m_description;
};
