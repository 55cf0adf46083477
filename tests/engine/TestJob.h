#pragma once

#include "DataExporterRegistry.h"
#include "PackerJob.h"
#include "Settings.h"
#include "Sorvane.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <functional>

/// A folder with sprites, and jobs that pack it, in the test's own thread.
class TestProject {
public:
    TestProject() {
        DataFormats::setInstance(&DataExporterRegistry::instance());
        QDir(folder.path()).mkpath(QStringLiteral("sprites"));
        addSprite(QStringLiteral("red.png"), QSize(20, 10), 0xffff0000);
        addSprite(QStringLiteral("blue.png"), QSize(8, 30), 0xff0000ff);
        settings.addFile(path(QStringLiteral("sprites")));
        settings.setDataFormat(QStringLiteral("json"));
        settings.setDataFileName(path(QStringLiteral("out/sheet.json")));
        settings.setTextureFileName(path(QStringLiteral("out/sheet.png")));
    }

    QString path(const QString& name) const { return folder.filePath(name); }

    void addSprite(const QString& name, QSize size, QRgb color) {
        QImage image(size, QImage::Format_ARGB32);
        image.fill(color);
        image.save(path(QStringLiteral("sprites/") + name));
    }

    QByteArray content(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    bool exists(const QString& name) const { return QFile::exists(path(name)); }

    /// What a job reported, one line each: "2 Loading images...", "warning ...", "error ...", "sheet 64x32",
    /// "done".
    QStringList run(int mode = PackerJob::Publish, const std::function<void(PackerJob&)>& prepare = {}) {
        QStringList log;
        auto* job = new PackerJob(&queue, mode, settings.clone());
        job->setRescan(true);
        QObject::connect(job, &PackerJob::activity, [&log](int level, const QString& text) {
            log.append(QStringLiteral("%1 %2").arg(level).arg(text));
        });
        QObject::connect(job, &PackerJob::warning,
                         [&log](const QString& text) { log.append(QStringLiteral("warning ") + text); });
        QObject::connect(job, &PackerJob::error,
                         [&log](const QString& text) { log.append(QStringLiteral("error ") + text); });
        QObject::connect(job, &PackerJob::sheetUpdated, [&](const PackedResult& result) {
            lastResult = result;
            const QSize size = result.textures().isEmpty() ? QSize(0, 0) : result.textures().first().size();
            log.append(QStringLiteral("sheet %1x%2").arg(size.width()).arg(size.height()));
        });
        QEventLoop loop;
        QObject::connect(job, &PackerJob::done, &loop, [&](PackerJob* finished) {
            log.append(QStringLiteral("done"));
            finished->deleteJob();
            loop.quit();
        });
        if (prepare)
            prepare(*job);
        queue.addJob(job);
        loop.exec();
        return log;
    }

    QTemporaryDir folder;
    Settings settings;
    Sorvane queue;
    PackedResult lastResult;
};
