#include "PackerJob.h"

#include "Error.h"
#include "GlobalSettings.h"
#include "OutputAmongSources.h"
#include "PackerCore.h"
#include "PoolOrder.h"
#include "Settings.h"
#include "SmartUpdate.h"
#include "VariantDerivation.h"

#include <new>

PackerJob::PackerJob(QObject* threadOwner, int mode, Settings* settings)
    : m_settings(settings), m_variants(*settings), m_mode(mode) {
    GlobalSettings().setLastExporter(settings->dataFormat());
    connect(this, &PackerJob::warning, this, [this] { ++m_complaints; });
    connect(this, &PackerJob::error, this, [this] { ++m_complaints; });
    moveToThread(threadOwner->thread());
    settings->moveToThread(threadOwner->thread());
}

PackerJob::~PackerJob() = default;

void PackerJob::start(PackerCore* core) {
    m_core = core;
    m_state = State::PrepareVariant;
    connect(core, &PackerCore::activity, this, &PackerJob::activity);
    connect(core, &PackerCore::error, this, &PackerJob::error);
    connect(core, &PackerCore::warning, this, &PackerJob::warning);
    connect(core->tree(), &SpriteFileTreeModel::loadingDone, this, &PackerJob::onLoadingDone,
            Qt::QueuedConnection);
    // The tree has inner steps alone to tell of.
    if (m_activityLevel >= 2)
        connect(core->tree(), &SpriteFileTreeModel::activity, this, &PackerJob::activity,
                Qt::QueuedConnection);
    queueNextStep();
}

void PackerJob::abort() {
    emit activity(0, QStringLiteral("Aborting..."));
    m_aborted = true;
    queueNextStep();
}

void PackerJob::queueNextStep() {
    QMetaObject::invokeMethod(this, &PackerJob::nextStep, Qt::QueuedConnection);
}

void PackerJob::nextStep() {
    if (m_state == State::Done)
        return;
    // While the tree loads, its own report ends the wait, aborted or not; a job that waits in the queue has
    // yet to be started.
    if (m_aborted && m_state != State::WaitForLoading && m_state != State::Idle)
        m_state = State::Finish;
    QString fault;
    try {
        work();
        return;
    } catch (const Error& caught) {
        fault = caught.message();
    } catch (const std::bad_alloc&) {
        fault = QStringLiteral("Out of memory");
    } catch (const std::exception& caught) {
        fault = QString::fromLocal8Bit(caught.what());
    }
    m_state = State::Failed;
    emit error(fault);
    queueNextStep();
}

void PackerJob::work() {
    switch (m_state) {
    case State::Idle:
    case State::WaitForLoading:
    case State::Done:
        return;
    case State::PrepareVariant:
        prepareVariant();
        break;
    case State::StartLoading:
        startLoading();
        return;
    case State::ModelLoaded:
        emit modelUpdated(m_core->tree());
        m_state = State::PrepareSprites;
        break;
    case State::PrepareSprites:
        m_core->updateSprites();
        m_state = State::CollectAliases;
        break;
    case State::CollectAliases:
        m_core->collectAliases();
        m_state = State::CalculateLayout;
        break;
    case State::CalculateLayout:
        calculateLayout();
        break;
    case State::Write:
        write();
        m_state = State::VariantDone;
        break;
    case State::VariantDone:
        m_state = m_settings->forceIdenticalLayout() ? State::DeriveVariant : State::PrepareVariant;
        break;
    case State::DeriveVariant:
        deriveNextVariant();
        break;
    case State::Finish:
    case State::Failed:
        finish();
        return;
    }
    queueNextStep();
}

bool PackerJob::nextVariant() {
    // The core must not look at the former variant once it is gone.
    m_core->setSettings(nullptr);
    m_variantSettings = m_variants.next();
    if (m_variantSettings)
        m_core->setSettings(m_variantSettings.get());
    return m_variantSettings != nullptr;
}

void PackerJob::prepareVariant() {
    const bool isMainSheet = m_variantSettings == nullptr;
    if (m_mode != Preview && isMainSheet)
        m_variants.checkVariants();
    if (!nextVariant()) {
        m_state = State::Finish;
        return;
    }
    m_core->checkFiles(m_rescan);
    if (m_mode != Preview && isMainSheet)
        warnOfOutputAmongSources();
    m_state = State::StartLoading;
    // Derived variants need the main layout, so that an identical layout always goes the long way.
    if (m_mode == Publish && !m_settings->forceIdenticalLayout() && m_complaints == 0 &&
        m_core->knownUpToDate()) {
        emit activity(1, QStringLiteral("Nothing to do - sprite sheet not changed"));
        m_state = State::VariantDone;
    }
}

void PackerJob::startLoading() {
    m_state = State::WaitForLoading;
    m_core->tree()->loadSprites();
}

void PackerJob::onLoadingDone() {
    if (m_state != State::WaitForLoading)
        return;
    m_state = State::ModelLoaded;
    queueNextStep();
}

void PackerJob::calculateLayout() {
    m_layoutResult = m_core->calculate(this, m_variants.baseFactor());
    m_publishedResult = m_layoutResult;
    // Later jobs bring their pixels into the cached attempt behind this result; the receiver keeps a copy of
    // its own.
    emit sheetUpdated(m_publishedResult.clone());
    if (m_mode == Preview) {
        m_state = State::Finish;
        return;
    }
    if (!m_publishedResult.allPlaced())
        reportUnplaced();
    const bool isCurrent = m_core->upToDate();
    m_state = State::Write;
    if (isCurrent && m_mode != ForcePublish) {
        emit activity(1, QStringLiteral("Nothing to do - sprite sheet not changed"));
        notePublish();
        m_state = State::VariantDone;
    }
}

void PackerJob::reportUnplaced() {
    emit error(QStringLiteral("Not all sprites could be packed into the texture!"));
    for (const PackedSprite& sprite : m_publishedResult.unplaced())
        emit warning(sprite.fullName());
}

void PackerJob::write() {
    m_core->prepareOutputFiles();
    if (m_publishedResult.textures().isEmpty()) {
        emit warning(
            QStringLiteral("No sprites found: nothing was written to %1 and %2. Check the files and "
                           "folders given, and --ignore-files")
                .arg(m_variantSettings->textureFileName().path(), m_variantSettings->dataFileName().path()));
        return;
    }
    for (const PackedTexture& texture : m_publishedResult.textures()) {
        emit activity(
            1, QStringLiteral("Resulting sprite sheet is %1x%2.").arg(texture.width()).arg(texture.height()));
        m_core->writeTexture(texture);
        m_core->writeData(texture);
    }
    notePublish();
}

void PackerJob::warnOfOutputAmongSources() {
    const QString complaint = outputAmongSources(*m_variantSettings);
    if (!complaint.isEmpty())
        emit warning(complaint);
}

void PackerJob::deriveNextVariant() {
    if (!nextVariant()) {
        m_state = State::Finish;
        return;
    }
    const double ratio =
        m_variantSettings->globalSpriteSettings()->scale() / m_settings->globalSpriteSettings()->scale();
    m_publishedResult = deriveVariant(m_layoutResult, m_core->packSprites(), *m_variantSettings, ratio,
                                      m_core->rotationDirection());
    m_state = State::Write;
}

void PackerJob::notePublish() {
    m_published.append({m_variantSettings->dataFileName().path(), m_core->smartUpdateKey()});
}

void PackerJob::finish() {
    const bool clean = m_state == State::Finish && !m_aborted && m_complaints == 0;
    for (const auto& [dataFile, token] : qAsConst(m_published)) {
        if (clean)
            SmartUpdate::remember(dataFile, token);
        else
            SmartUpdate::forget(dataFile);
    }
    m_core->setSettings(nullptr);
    // The next job may start before this one is deleted, and must not be heard through it.
    disconnect(m_core, nullptr, this, nullptr);
    disconnect(m_core->tree(), nullptr, this, nullptr);
    m_state = State::Done;
    PoolOrder::handOver(this);
    emit done(this);
}

void PackerJob::deleteJob() { deleteLater(); }
