#pragma once

#include "PackedResult.h"

#include <QObject>
#include <QStringList>
#include <QThread>

#include <memory>

class PackerJob;
class Settings;
class Sorvane;

/// A batch run: one project after the other, or one sheet from plain images. Builds the settings of each,
/// hands them to the job queue in the worker thread, reports on the console, and ends the event loop with the
/// status of the run. Main thread.
class CommandLineSequencer : public QObject {
    Q_OBJECT

public:
    /// The arguments of the process without the program's name.
    explicit CommandLineSequencer(const QStringList& arguments);
    ~CommandLineSequencer() override;

    /// To be called before the event loop starts.
    void start();

    int errorCount() const { return m_errorCount; }
    int warningCount() const { return m_warningCount; }

signals:
    void shutDown();
    void newJob(PackerJob* job);

public slots:
    void processNextSvs();
    void init();
    void onActivity(int level, const QString& text);
    void onWarning(const QString& text);
    void onError(const QString& text);
    void onSheetUpdated(const PackedResult& result);
    void onJobDone(PackerJob* job);
    void cleanupAndExit();

private:
    void parseOptions(Settings& settings);
    void startJob();
    void processImages();
    void processProject(const QString& fileName);
    void endRun(const QString& output);

    QStringList m_svsFiles; ///< still to process, the next one first
    QStringList m_arguments;
    std::unique_ptr<Sorvane> m_queue; ///< lives in the worker thread until that ends
    QThread m_workerThread;
    std::unique_ptr<Settings> m_settings; ///< of the project in work
    int m_errorCount = 0;
    int m_warningCount = 0;
    bool m_forcePublish = false;
    bool m_endedByOption = false; ///< --help or --version: status 0, whatever came before
};
