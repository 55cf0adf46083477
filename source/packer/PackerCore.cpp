#include "PackerCore.h"

#include "DataExporter.h"
#include "DataExporterRegistry.h"
#include "Error.h"
#include "FillResult.h"
#include "PackerJob.h"
#include "Settings.h"
#include "SideBySide.h"
#include "SizeSearch.h"
#include "SpriteImageNode.h"

#include <algorithm>

// The tree is a child, too, so that it comes along when the queue moves to its thread.
PackerCore::PackerCore(QObject* parent) : QObject(parent), m_tree(this) {}

void PackerCore::setSettings(Settings* settings) { m_settings = settings; }

void PackerCore::checkFiles(bool rescan) {
    // The next project of a run may have the same files under other rules.
    const bool sameRules =
        m_settings->ignoreFileList() == m_lastIgnoreList && m_settings->replaceList() == m_lastReplaceList;
    if (!rescan && sameRules && m_settings->fileList() == m_lastFileList)
        return;
    emit activity(2, QStringLiteral("Checking files and file system"));
    if (m_settings->replaceList() != m_lastReplaceList) {
        // A node keeps the name that it was made with: other rules need other nodes.
        Settings nothing;
        m_tree.update(&nothing);
        dropForgottenSprites();
    }
    m_lastIgnoreList = m_settings->ignoreFileList();
    m_lastReplaceList = m_settings->replaceList();
    m_tree.update(m_settings);
    dropForgottenSprites();
    m_lastFileList = m_settings->fileList();
}

/// A pruned node is freed by a later rescan, and a new node may get its address: its sprite has to go now.
void PackerCore::dropForgottenSprites() {
    QHash<const SpriteTreeNode*, Sprite> known;
    for (const SpriteImageNode* node : m_tree.sprites()) {
        const auto found = m_spriteCache.constFind(node);
        if (found != m_spriteCache.constEnd())
            known.insert(node, *found);
    }
    m_spriteCache.swap(known);
}

void PackerCore::updateSprites() {
    emit activity(2, QStringLiteral("Synchronizing sprite data"));
    QHash<const SpriteTreeNode*, Sprite> sprites;
    m_sprites.clear();
    for (SpriteImageNode* node : m_tree.sprites()) {
        const auto known = m_spriteCache.constFind(node);
        const bool isNew = known == m_spriteCache.constEnd();
        Sprite sprite = isNew ? Sprite(node->spriteName(), node->fileData()) : *known;
        if (isNew || node->changed()) {
            sprite.setImage(node->image());
            node->setChanged(false);
        }
        sprites.insert(node, sprite);
        m_sprites.append(sprite);
        if (!node->errorText().isEmpty())
            emit warning(QStringLiteral("%1: %2").arg(node->spriteName(), node->errorText()));
    }
    m_spriteCache.swap(sprites);

    emit activity(2, QStringLiteral("Sorting"));
    std::stable_sort(m_sprites.begin(), m_sprites.end(),
                     [](const Sprite& a, const Sprite& b) { return a.name() < b.name(); });

    emit activity(2, QStringLiteral("Optimizing sprites"));
    const Settings& settings = *m_settings;
    const auto first = m_sprites.begin();
    sideBySide(static_cast<std::size_t>(m_sprites.size()), [&settings, first](std::size_t number) {
        Sprite& sprite = first[static_cast<int>(number)];
        sprite.clearAliases();
        sprite.update(settings);
    });
}

void PackerCore::collectAliases() {
    const bool collect = m_settings->autoAliasEnabled();
    if (collect)
        emit activity(2, QStringLiteral("Collecting aliases"));
    m_packSprites.clear();
    QMultiHash<quint32, int> kept; // pixel hash to index in m_packSprites
    for (const Sprite& sprite : qAsConst(m_sprites)) {
        const bool hasImage = sprite.image().size().width() >= 0;
        // At a variant's scale a sprite may fail that keeps the image of the main sheet.
        if (!sprite.failure().isEmpty())
            emit warning(
                QStringLiteral("%1: %2").arg(sprite.name(), sprite.failure()) +
                (hasImage ? QStringLiteral(". Its image of the former sheet is packed") : QString()));
        if (!hasImage)
            continue;
        const auto equal = [&]() -> Sprite* {
            if (!collect)
                return nullptr;
            for (auto found = kept.constFind(sprite.hash());
                 found != kept.constEnd() && found.key() == sprite.hash(); ++found) {
                Sprite& other = m_packSprites[*found];
                if (other.image().size() == sprite.image().size() &&
                    other.image().image() == sprite.image().image())
                    return &other;
            }
            return nullptr;
        };
        if (Sprite* owner = equal()) {
            owner->addAlias(sprite);
            continue;
        }
        kept.insert(sprite.hash(), m_packSprites.size());
        m_packSprites.append(sprite);
    }
}

PackedResult PackerCore::calculate(const PackerJob* job, int baseFactor) {
    PackedResult result = layout(job, baseFactor);
    QHash<int, PackedSprite> byId;
    for (const PackedTexture& texture : result.textures()) {
        for (const PackedSprite& packed : texture.allSprites())
            byId.insert(packed.id(), packed);
    }
    for (const PackedSprite& packed : result.unplaced())
        byId.insert(packed.id(), packed);
    const DataExporter* found = DataExporterRegistry::instance().find(m_settings->dataFormat());
    if (!found)
        return {};
    for (const Sprite& sprite : qAsConst(m_packSprites)) {
        const auto packed = byId.find(sprite.id());
        if (packed != byId.end())
            copySpriteData(*packed, sprite, found->rotationDirection());
    }
    return result;
}

PackedResult PackerCore::layout(const PackerJob* job, int baseFactor) {
    emit activity(2, QStringLiteral("Calculating layout"));
    // Without a single image there is nothing to lay out; an empty sheet would serve nobody.
    if (m_packSprites.isEmpty())
        return {};
    const LayoutInputs inputs(*m_settings, m_sprites, baseFactor);
    const bool changed = !(inputs == m_layoutInputs);
    m_layoutInputs = inputs;
    if (!changed && !m_lastResult.isEmpty()) {
        emit activity(2, QStringLiteral("Layout did not change."));
        return m_lastResult;
    }
    // A search that fails or is aborted leaves no result that a later job with equal inputs could take for
    // its own.
    m_lastResult = {};
    PackedResult result = searchSize(job);
    fillResult(result, m_sprites, rotationDirection());
    if (!job->isAborted())
        m_lastResult = result;
    return result;
}

PackedResult PackerCore::searchSize(const PackerJob* job) {
    SizeSearchInput input;
    input.maxSize = m_layoutInputs.maxSize;
    input.fixedSize = m_layoutInputs.fixedSize;
    input.sizeConstraints = m_layoutInputs.sizeConstraints;
    input.forceSquared = m_layoutInputs.forceSquared;
    input.forceWordAligned = m_layoutInputs.forceWordAligned;
    input.allowRotation = m_layoutInputs.allowRotation;
    input.outputFormat = m_layoutInputs.outputFormat;
    input.borderPadding = m_layoutInputs.borderPadding;
    input.shapePadding = m_layoutInputs.shapePadding;
    input.baseFactor = m_layoutInputs.baseFactor;
    input.algorithmSettings = m_settings->algorithmSettings();
    input.sprites = m_packSprites;
    SizeSearch search(input,
                      {[this](const PackerParameters& parameters) { return m_attempts.pack(parameters); },
                       [job] { return job->isAborted(); },
                       [this](int level, const QString& message) { emit activity(level, message); }});
    return search.run();
}

DataExporter& PackerCore::exporter() const {
    DataExporter* found = DataExporterRegistry::instance().find(m_settings->dataFormat());
    if (!found)
        throw Error(Error::CommandLine,
                    QStringLiteral("Exporter with id %1 not found!").arg(m_settings->dataFormat()));
    return *found;
}

int PackerCore::rotationDirection() const { return exporter().rotationDirection(); }
