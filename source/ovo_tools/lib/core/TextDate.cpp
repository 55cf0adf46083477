#include "TextDate.h"

#include <QLocale>

QString textDate(const QDateTime& time) {
    return time.isValid() ? QLocale::c().toString(time, QStringLiteral("ddd MMM d HH:mm:ss yyyy"))
                          : QString();
}
