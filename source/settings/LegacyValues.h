#pragma once

#include <QSize>
#include <QStringList>
#include <QVariantHash>

/// The values of a first-generation project by their keys. A key that isn't stored has its default. Values
/// convert as QVariant converts them.
class LegacyValues {
public:
    LegacyValues();

    /// Stores a value; a null one means the default. A key that no project had is left out.
    void take(const QString& key, const QVariant& value);

    QString text(const char* key) const { return value(key).toString(); }
    bool flag(const char* key) const { return value(key).toBool(); }
    int integer(const char* key) const { return value(key).toInt(); }
    uint count(const char* key) const { return value(key).toUInt(); }
    float factor(const char* key) const { return value(key).toFloat(); }
    QSize size(const char* key) const { return value(key).toSize(); }
    QStringList list(const char* key) const { return value(key).toStringList(); }

private:
    QVariant value(const char* key) const;

    QVariantHash m_values;
};
