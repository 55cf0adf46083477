#include "TextDate.h"

#include <QDateTime>
#include <QLocale>

#include <gtest/gtest.h>

#include <ctime>

TEST(TextDate, isTheToolkitsForm) {
    // In some zones the toolkit is wrong about 1970.
    qputenv("TZ", "UTC");
    tzset();
    constexpr qint64 times[] = {0,    -1,           -1000,        -86400001,     951782399999, 951782400000,
                                1001, 953434800000, 972781200000, 1795577195123, 2145916799999};
    const QString form = QStringLiteral("ddd MMM d HH:mm:ss yyyy");
    for (int round = 0; round < 2; ++round) // the second time from the cache
        for (const qint64 time : times)
            EXPECT_EQ(QString::fromUtf8(textDate(time)),
                      QLocale::c().toString(QDateTime::fromMSecsSinceEpoch(time), form))
                << time;
}
