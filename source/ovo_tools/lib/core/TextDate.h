#pragma once

#include <QByteArray>

/// The toolkit's text date form, for instance "Wed May 20 03:40:13 1998", in a locale that is the same for
/// everybody and in local time. Milliseconds since 1970 in UTC. Empty for a time whose year is out of range.
QByteArray textDate(qint64 time);
