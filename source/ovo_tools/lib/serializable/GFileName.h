#pragma once

#include <QList>
#include <QMetaType>
#include <QString>

/// The path of a file or folder in memory, absolute as a rule. Project files hold it relative to their own
/// folder.
class GFileName {
public:
    GFileName() = default;
    GFileName(const QString& path) : m_path(path) {} // NOLINT: converts without loss, both ways
    operator const QString&() const { return m_path; }

    const QString& path() const { return m_path; }
    bool isEmpty() const { return m_path.isEmpty(); }

    friend bool operator==(const GFileName& a, const GFileName& b) { return a.m_path == b.m_path; }
    friend bool operator!=(const GFileName& a, const GFileName& b) { return !(a == b); }

private:
    QString m_path;
};

using GFileNameList = QList<GFileName>;

Q_DECLARE_METATYPE(GFileName)
Q_DECLARE_METATYPE(GFileNameList)
