#include "Error.h"

Error::Error() : Error(Unknown, QStringLiteral("Unknown")) {}

Error::Error(int code, const QString& message) : m_code(code), m_message(message), m_utf8(message.toUtf8()) {}
