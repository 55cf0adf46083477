#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

inline QString u(const char* text) { return QString::fromUtf8(text); }

struct Outcome {
    int status = -1;
    QString out;
    QString err;
};

/// The real program as a child process, as a build script runs it, in a folder with two sprites.
class Program : public testing::Test {
protected:
    void SetUp() override {
        QDir(m_folder.path()).mkpath(u("sprites/deep"));
        addSprite("red.png", QSize(20, 10), 0xffff0000);
        addSprite("deep/blue.png", QSize(8, 30), 0xff0000ff);
    }

    static QString program() { return QStringLiteral(SORVANE_PROGRAM); }

    QString path(const char* name) const { return m_folder.filePath(u(name)); }

    void addSprite(const char* name, QSize size, QRgb color) {
        QImage image(size, QImage::Format_ARGB32);
        image.fill(color);
        ASSERT_TRUE(image.save(path("sprites/") + u(name)));
    }

    void addFile(const char* name, const QByteArray& content) {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    /// Pixels that no compression makes small.
    void addNoise(const char* name, int side) {
        QImage image(side, side, QImage::Format_ARGB32);
        QRandomGenerator random(7);
        for (int y = 0; y < side; ++y) {
            for (int x = 0; x < side; ++x)
                image.setPixel(x, y, random.generate() | 0xff000000);
        }
        ASSERT_TRUE(image.save(path("sprites/") + u(name)));
    }

    QByteArray content(const char* name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    Outcome start(const QString& command, const QStringList& arguments) const {
        QProcess process;
        process.setWorkingDirectory(m_folder.path());
        process.start(command, arguments);
        Outcome outcome;
        if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
            return outcome;
        outcome.status = process.exitCode();
        outcome.out = QString::fromUtf8(process.readAllStandardOutput());
        outcome.err = QString::fromUtf8(process.readAllStandardError());
        return outcome;
    }

    Outcome run(const QStringList& arguments) const { return start(program(), arguments); }
    Outcome run(const char* line) const { return run(u(line).split(QLatin1Char(' '), Qt::SkipEmptyParts)); }

    QStringList frames(const char* dataFile) const {
        return QJsonDocument::fromJson(content(dataFile)).object().value(u("frames")).toObject().keys();
    }

    QTemporaryDir m_folder;
};
