#include "CommandLineSequencer.h"

#include "ConsoleLog.h"
#include "EndOfRun.h"
#include "Error.h"
#include "HelpText.h"
#include "OptionParser.h"
#include "PackerJob.h"
#include "PoolOrder.h"
#include "Settings.h"
#include "Sorvane.h"

#include <QCoreApplication>
#include <QTimer>

#include <exception>

namespace {

/// What is wrong inside a project is told without the project's name: it gets a line of its own.
Error inProject(const Error& error, const QString& fileName) {
    if (error.message().contains(fileName))
        return error;
    return {error.code(), QStringLiteral("%1\nin the project file %2").arg(error.message(), fileName)};
}

std::unique_ptr<Settings> loadProject(const QString& fileName) {
    try {
        return std::unique_ptr<Settings>(Settings::load(fileName));
    } catch (const Error& error) {
        throw inProject(error, fileName);
    }
}

} // namespace

CommandLineSequencer::CommandLineSequencer(const QStringList& arguments)
    : m_arguments(arguments), m_queue(std::make_unique<Sorvane>()) {
    m_queue->moveToThread(&m_workerThread);
    connect(this, &CommandLineSequencer::newJob, m_queue.get(), &Sorvane::addJob);
    connect(this, &CommandLineSequencer::shutDown, m_queue.get(), &Sorvane::shutDown);
}

CommandLineSequencer::~CommandLineSequencer() {
    m_workerThread.quit();
    m_workerThread.wait();
    // Where the thread has ended, its objects may be deleted by another one.
    PoolOrder::takeOver(m_queue.get());
    m_queue.reset();
}

void CommandLineSequencer::start() {
    m_workerThread.start();
    QTimer::singleShot(0, this, &CommandLineSequencer::init);
}

void CommandLineSequencer::init() {
    // Every argument of that ending is a project, even where it stands as the value of an option.
    QStringList others;
    for (const QString& argument : qAsConst(m_arguments)) {
        if (argument.endsWith(QLatin1String(".svs"), Qt::CaseInsensitive))
            m_svsFiles.append(argument);
        else
            others.append(argument);
    }
    m_arguments = others;
    if (!m_svsFiles.isEmpty()) {
        QTimer::singleShot(0, this, &CommandLineSequencer::processNextSvs);
        return;
    }
    try {
        processImages();
    } catch (const EndOfRun& end) {
        endRun(end.output);
    } catch (const std::exception& error) {
        onError(QString::fromUtf8(error.what()));
        processNextSvs();
    }
}

void CommandLineSequencer::processImages() {
    m_settings = std::make_unique<Settings>();
    parseOptions(*m_settings);
    if (m_settings->fileList().isEmpty()) {
        ConsoleLog::instance().print(helpText());
        onError(QStringLiteral("No files specified for processing."));
        processNextSvs();
        return;
    }
    startJob();
}

void CommandLineSequencer::processNextSvs() {
    // A loop: as many faulty projects as a command line holds would be too deep a recursion.
    while (!m_svsFiles.isEmpty()) {
        try {
            m_settings.reset();
            processProject(m_svsFiles.takeFirst());
            return;
        } catch (const EndOfRun& end) {
            endRun(end.output);
            return;
        } catch (const std::exception& error) {
            onError(QString::fromUtf8(error.what()));
        }
    }
    QTimer::singleShot(10, this, &CommandLineSequencer::cleanupAndExit);
}

void CommandLineSequencer::processProject(const QString& fileName) {
    if (!m_arguments.contains(QLatin1String("--quiet")))
        ConsoleLog::instance().print(QStringLiteral("Processing %1...\n").arg(fileName));
    m_settings = loadProject(fileName);
    parseOptions(*m_settings);
    if (m_settings->textureFileName().isEmpty() || m_settings->dataFileName().isEmpty())
        throw inProject(
            Error(Error::Batch, QStringLiteral("Filenames for texture and data file must be set inside svs "
                                               "file for batch processing.")),
            fileName);
    startJob();
}

void CommandLineSequencer::parseOptions(Settings& settings) {
    // Warnings of the options themselves are to be quiet too.
    ConsoleLog::instance().setVerbosity(
        settings.quiet() || m_arguments.contains(QLatin1String("--quiet")) ? -1 : 1);
    OptionContext context{settings, [this](const QString& text) { onWarning(text); }};
    ::parseOptions(context, m_arguments);
    m_forcePublish = context.forcePublish;
    ConsoleLog::instance().setVerbosity(settings.quiet() ? -1 : settings.verboseRequested() ? 2 : 1);
}

void CommandLineSequencer::startJob() {
    const int mode = m_forcePublish ? PackerJob::ForcePublish : PackerJob::Publish;
    auto* job = new PackerJob(m_queue.get(), mode, m_settings->clone());
    job->setActivityLevel(ConsoleLog::instance().verbosity());
    connect(job, &PackerJob::error, this, &CommandLineSequencer::onError);
    connect(job, &PackerJob::warning, this, &CommandLineSequencer::onWarning);
    connect(job, &PackerJob::activity, this, &CommandLineSequencer::onActivity);
    connect(job, &PackerJob::done, this, &CommandLineSequencer::onJobDone);
    connect(job, &PackerJob::sheetUpdated, this, &CommandLineSequencer::onSheetUpdated);
    PoolOrder::handOver(job);
    emit newJob(job);
}

void CommandLineSequencer::onActivity(int level, const QString& text) {
    ConsoleLog::instance().activity(level, text);
}

void CommandLineSequencer::onWarning(const QString& text) {
    ++m_warningCount;
    ConsoleLog::instance().warning(text);
}

void CommandLineSequencer::onError(const QString& text) {
    ++m_errorCount;
    ConsoleLog::instance().error(text);
}

/// A batch run has no view of the sheet.
void CommandLineSequencer::onSheetUpdated(const PackedResult&) {}

void CommandLineSequencer::onJobDone(PackerJob* job) {
    PoolOrder::takeOver(job);
    QMetaObject::invokeMethod(job, &PackerJob::deleteJob, Qt::QueuedConnection);
    processNextSvs();
}

void CommandLineSequencer::endRun(const QString& output) {
    ConsoleLog::instance().print(output);
    m_endedByOption = true;
    m_svsFiles.clear();
    processNextSvs();
}

void CommandLineSequencer::cleanupAndExit() {
    emit shutDown();
    m_workerThread.wait();
    QCoreApplication::exit(m_endedByOption || m_errorCount == 0 ? 0 : 1);
}
