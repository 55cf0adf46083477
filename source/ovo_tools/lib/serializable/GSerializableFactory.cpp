#include "GSerializableFactory.h"

#include <QHash>
#include <QObject>

namespace GSerializableFactory {

namespace {

QHash<QString, Maker>& makers() {
    static QHash<QString, Maker> table;
    return table;
}

} // namespace

bool add(const char* className, Maker maker) {
    makers().insert(QLatin1String(className), maker);
    return true;
}

QObject* create(const QString& className) {
    const Maker maker = makers().value(className);
    return maker ? maker() : nullptr;
}

} // namespace GSerializableFactory
