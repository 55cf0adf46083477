#pragma once

#include "ImageLoader.h"
#include "PkmFormat.h"
#include "PpmFormat.h"
#include "PsdReader.h"
#include "PvrReader.h"
#include "TestPictures.h"
#include "TgaFormat.h"
#include "TiffReader.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>

/// What the reader of the name's extension makes of the bytes.
inline QImage readBytes(const QString& name, QByteArray bytes) {
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    auto flavour = UniversalImageLoader::binary;
    const auto endsIn = [&](const char* ending) { return name.endsWith(QLatin1String(ending)); };
    return endsIn(".tga")   ? readTga(buffer)
           : endsIn(".ppm") ? readPpm(buffer, &flavour)
           : endsIn(".pkm") ? readPkm(buffer)
           : endsIn(".psd") ? readPsd(buffer)
           : endsIn(".tif") ? readTiff(buffer, name)
           : endsIn(".gz")  ? readPvrGz(buffer)
           : endsIn(".ccz") ? readPvrCcz(buffer)
                            : readPvr(buffer);
}

inline QImage readBytes(const char* name, const QByteArray& bytes) {
    return readBytes(QString::fromLatin1(name), bytes);
}

/// Bytes of address space that the process has had at most.
inline qint64 peakMemory() {
    QFile status(QStringLiteral("/proc/self/status"));
    EXPECT_TRUE(status.open(QIODevice::ReadOnly));
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmPeak:"))
            return line.mid(7).simplified().split(' ').first().toLongLong() * 1024;
    return -1;
}

/// Keeps what goes to the debug channel while it lives, instead of printing it.
class LogCatcher {
public:
    LogCatcher() {
        lines().clear();
        m_before = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& line) { lines() += line; });
    }
    ~LogCatcher() { qInstallMessageHandler(m_before); }
    LogCatcher(const LogCatcher&) = delete;
    LogCatcher& operator=(const LogCatcher&) = delete;

    static QStringList& lines() {
        static QStringList kept;
        return kept;
    }

private:
    QtMessageHandler m_before;
};

class FormatsTest : public testing::Test {
protected:
    QString path(const QString& name) const { return folder.filePath(name); }
    QByteArray content(const QString& name) const {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(name);
        return file.readAll();
    }
    void write(const QString& name, const QByteArray& bytes) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }
    /// The bytes that saving gives; none if it fails.
    QByteArray saved(const QString& name, const QString& format, const QImage& image,
                     const QHash<QString, QVariant>& options = {}) const {
        return loader.save(path(name), format, image, options) ? content(name) : QByteArray();
    }

    QTemporaryDir folder;
    QtUniversalImageLoader::ImageLoader loader;
};
