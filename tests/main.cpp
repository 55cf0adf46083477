// Entry of every test binary: a toolkit application that needs no display, and a home folder of its own, so
// that no test reads or writes what belongs to the user.

#include <QGuiApplication>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QTemporaryDir home;
    for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME", "XDG_DATA_HOME"})
        qputenv(variable, home.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    QGuiApplication::setOrganizationName(QStringLiteral("Sorvane"));
    QGuiApplication::setApplicationName(QStringLiteral("Sorvane tests"));
    return RUN_ALL_TESTS();
}
