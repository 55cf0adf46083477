#include "GEnumInfo.h"

#include "Error.h"

void GEnumInfoDataBase::add(const QString& stored, const QString& display, const QString& description) {
    const int value = names.size();
    names.append(stored);
    displayNames.insert(stored, display);
    descriptions.insert(stored, description);
    values.insert(stored, value);
    valueNames.insert(value, stored);
}

int GEnumInfoBase::number(const QString& stored) const {
    const auto found = m_data.values.constFind(stored);
    if (found == m_data.values.constEnd())
        throw Error(Error::EnumName, QStringLiteral("%1 is not element of enum %2. Possible values are %3")
                                         .arg(stored, m_shortName, m_data.names.join(QStringLiteral(", "))));
    return *found;
}
