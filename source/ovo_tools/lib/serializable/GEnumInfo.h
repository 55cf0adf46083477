#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

/// The texts of one enum, by stored name.
struct GEnumInfoDataBase {
    QStringList names; ///< stored names in value order
    QHash<QString, QString> descriptions;
    QHash<QString, QString> displayNames;
    QHash<QString, int> values;
    QHash<int, QString> valueNames;

protected:
    void add(const QString& stored, const QString& display, const QString& description);
};

/// The texts of the enum E; the constructor of each specialisation is generated from the table of settings.
template <typename E>
struct GEnumInfoData : GEnumInfoDataBase {
    GEnumInfoData();
    static QString shortName();     ///< the name in error texts
    static QString qualifiedName(); ///< the name in files
};

/// Look-up of an enum's names. Files, name properties and the command line exchange stored names, never
/// numbers.
class GEnumInfoBase {
public:
    /// Stored names in value order.
    const QStringList& names() const { return m_data.names; }

    /// Text of the help output and of tool tips.
    QString description(const QString& stored) const { return m_data.descriptions.value(stored); }

    /// Text of a combo box.
    QString displayName(const QString& stored) const { return m_data.displayNames.value(stored); }

    /// The enum's name as files store it, for instance "SettingsBase::OutputFormat".
    const QString& qualifiedName() const { return m_qualifiedName; }

    /// The number of a stored name. Throws Error 55 with all possible names for any other text.
    int number(const QString& stored) const;

protected:
    GEnumInfoBase(const GEnumInfoDataBase& data, const QString& shortName, const QString& qualifiedName)
        : m_data(data), m_shortName(shortName), m_qualifiedName(qualifiedName) {}

    const GEnumInfoDataBase& m_data;

private:
    QString m_shortName;
    QString m_qualifiedName;
};

template <typename E>
class GEnumInfo : public GEnumInfoBase {
public:
    /// Made at first use; lives to the end of the process. Safe to ask from any thread.
    static const GEnumInfo& instance() {
        static const GEnumInfoData<E> data;
        static const GEnumInfo info(data);
        return info;
    }

    /// Throws Error 55 for a name that the enum hasn't.
    E value(const QString& stored) const { return static_cast<E>(number(stored)); }

    /// The stored name; empty for a number outside the enum.
    QString name(E value) const { return m_data.names.value(static_cast<int>(value)); }

private:
    explicit GEnumInfo(const GEnumInfoData<E>& data)
        : GEnumInfoBase(data, GEnumInfoData<E>::shortName(), GEnumInfoData<E>::qualifiedName()) {}
};
