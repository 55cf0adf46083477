#include "Sorvane.h"

#include "PackerCore.h"
#include "PackerJob.h"
#include "PoolOrder.h"

#include <QDebug>
#include <QThread>

Sorvane::Sorvane(QObject* parent) : QObject(parent), m_core(new PackerCore(this)) {}

void Sorvane::addJob(PackerJob* job) {
    PoolOrder::takeOver(job);
    m_jobs.append(job);
    nextJob();
}

void Sorvane::nextJob() {
    if (m_currentJob) {
        qDebug("void Sorvane::nextJob() - still processing");
        return;
    }
    if (m_jobs.isEmpty()) {
        emit idle();
        return;
    }
    m_currentJob = m_jobs.takeFirst();
    connect(m_currentJob, &PackerJob::done, this, &Sorvane::onJobFinished);
    m_currentJob->start(m_core);
}

void Sorvane::onJobFinished(PackerJob* job) {
    if (job == m_currentJob)
        m_currentJob = nullptr;
    nextJob();
}

void Sorvane::shutDown() {
    emit terminated();
    PoolOrder::handOver(this);
    thread()->exit(0);
}
