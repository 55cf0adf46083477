#pragma once

#include <QList>
#include <QObject>

class PackerCore;
class PackerJob;

/// The queue of jobs. Lives in the worker thread; one job runs at a time, and the core with its caches stays
/// alive between them.
class Sorvane : public QObject {
    Q_OBJECT

public:
    explicit Sorvane(QObject* parent = nullptr);

signals:
    void idle();
    void terminated();

public slots:
    /// Queues a job; the front end keeps the right to delete it after its done().
    void addJob(PackerJob* job);
    /// Ends the event loop of the queue's thread.
    void shutDown();
    void onJobFinished(PackerJob* job);
    void nextJob();

private:
    PackerCore* m_core;
    PackerJob* m_currentJob = nullptr;
    QList<PackerJob*> m_jobs;
};
