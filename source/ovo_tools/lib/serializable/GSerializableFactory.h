#pragma once

#include <QString>

class QObject;

/// Makes serializable objects by class name. Every class registers itself before main() and the table is only
/// read afterwards.
namespace GSerializableFactory {

using Maker = QObject* (*)();

/// Registers a class; the result only serves to initialise a static variable.
bool add(const char* className, Maker maker);

/// A new object without parent, owned by the caller; null for an unknown name.
QObject* create(const QString& className);

} // namespace GSerializableFactory
