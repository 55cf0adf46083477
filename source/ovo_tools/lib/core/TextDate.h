#pragma once

#include <QDateTime>
#include <QString>

/// The toolkit's text date form, for instance "Wed May 20 03:40:13 1998", in a locale that is the same for
/// everybody. Empty for a time that isn't valid.
QString textDate(const QDateTime& time);
