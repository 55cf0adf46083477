#pragma once

#include <QString>

/// Words that many formats share.
namespace DataText {

inline QString boolean(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }

} // namespace DataText
