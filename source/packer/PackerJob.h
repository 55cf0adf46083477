#pragma once

#include "PackedResult.h"
#include "VariantPlan.h"

#include <QObject>
#include <QPair>
#include <QVector>

#include <atomic>
#include <memory>

class PackerCore;
class Settings;
class SpriteFileTreeModel;

/// One pass from settings to a packed layout and, if it publishes, to files. A state machine that advances
/// one step a queued call, so that the queue stays responsive between steps. Constructed in the front end's
/// thread; from then on all slots run in the queue's thread. Only abort() may be called from elsewhere.
class PackerJob : public QObject {
    Q_OBJECT

public:
    enum Mode : int {
        Preview = 0,      ///< ends after the layout; nothing is written
        Publish = 1,      ///< writes both files unless they are current
        ForcePublish = 2, ///< writes them in any case
    };

    /// Takes ownership of the settings and moves itself and them to the thread of `threadOwner`, the queue.
    PackerJob(QObject* threadOwner, int mode, Settings* settings);
    ~PackerJob() override;

    /// Looks at the file system even if the file list didn't change. To be called before the job is queued.
    void setRescan(bool rescan) { m_rescan = rescan; }

    /// Highest level of activity that anybody listens to; 2, all of them, unless told. What a scan says of
    /// each of thousands of files isn't put together in vain then. To be called before the job is queued.
    void setActivityLevel(int level) { m_activityLevel = level; }

    /// Begins; `core` is the queue's and outlives the job.
    void start(PackerCore* core);

    /// Asks the job to end as soon as it can; it still reports done(). From any thread.
    void abort();

    int mode() const { return m_mode; }
    bool isAborted() const { return m_aborted; }

signals:
    void modelUpdated(SpriteFileTreeModel* model);
    void sheetUpdated(const PackedResult& result);
    void activity(int level, const QString& message);
    void warning(const QString& message);
    void error(const QString& message);
    void done(PackerJob* job);

public slots:
    void nextStep();
    void onLoadingDone();
    /// The receiver of done() calls it, queued.
    void deleteJob();

private:
    enum class State {
        Idle,
        PrepareVariant,
        StartLoading,
        WaitForLoading,
        ModelLoaded,
        PrepareSprites,
        CollectAliases,
        CalculateLayout,
        Write,
        VariantDone,
        DeriveVariant,
        Finish,
        Failed,
        Done,
    };

    void work();
    void queueNextStep();
    bool nextVariant();
    void prepareVariant();
    void startLoading();
    void calculateLayout();
    void reportUnplaced();
    void write();
    void warnOfOutputAmongSources();
    void deriveNextVariant();
    void finish();
    void notePublish();

    std::unique_ptr<Settings> m_settings;
    std::unique_ptr<Settings> m_variantSettings; ///< null between variants
    VariantPlan m_variants;
    PackerCore* m_core = nullptr;
    bool m_rescan = false;
    int m_activityLevel = 2;
    const int m_mode;
    State m_state = State::Idle;
    PackedResult m_layoutResult;    ///< what the core returned, which derived variants are made from
    PackedResult m_publishedResult; ///< what is reported and written
    std::atomic<bool> m_aborted = false;
    int m_complaints = 0;                         ///< warnings and errors so far
    QVector<QPair<QString, QString>> m_published; ///< data file and token of each sheet
};
