#pragma once

#include <QProcess>
#include <QStringList>

#include <gtest/gtest.h>

/// What another program makes of a text that it reads from its standard input. The program has to be there,
/// and to like the text.
inline QByteArray readOutside(const char* program, const QStringList& arguments, const QByteArray& text) {
    QProcess process;
    process.start(QLatin1String(program), arguments);
    process.write(text);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(60000)) << program << ": " << process.errorString().toStdString();
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << program;
    EXPECT_EQ(process.exitCode(), 0) << program << ": " << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput();
}
