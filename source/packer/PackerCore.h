#pragma once

#include "AttemptCache.h"
#include "GFileName.h"
#include "LayoutInputs.h"
#include "PackedResult.h"
#include "Sprite.h"
#include "SpriteFileTreeModel.h"

#include <QHash>
#include <QObject>

class DataExporter;
class PackerJob;
class Settings;

/// The engine behind the jobs. A job calls its operations step by step, in the order of their declaration. It
/// outlives the jobs: source tree, prepared sprites and packing attempts stay, so that a job repeats only
/// what changed. Belongs to the worker thread.
class PackerCore : public QObject {
    Q_OBJECT

public:
    explicit PackerCore(QObject* parent = nullptr);

    /// Takes the settings of the next pass; not owned.
    void setSettings(Settings* settings);

    SpriteFileTreeModel* tree() { return &m_tree; }

    /// Rebuilds the source tree if the file list changed or `rescan` asks for it. Throws Error.
    void checkFiles(bool rescan);

    /// Brings all sprites up to date with the tree and the settings, on all cores.
    void updateSprites();

    /// Finds equal sprites; sets those aside that have no image.
    void collectAliases();

    /// The layout, with the sprites' pixels and numbers in it. `job` is asked whether it was aborted. Throws
    /// Error.
    PackedResult calculate(const PackerJob* job, int baseFactor);

    /// Sprites that the last updateSprites() left; those that are packed have their aliases with them.
    const QList<Sprite>& packSprites() const { return m_packSprites; }

    /// Computes the token of this publish from what the tree read, keeps it for writeData(), and tests both
    /// files.
    bool upToDate();

    /// The same test before anything is read, by the files as they are on disk now: true only if the last
    /// publish of these files noted that it ended without a warning with this very token.
    bool knownUpToDate();

    /// The token that upToDate() kept.
    const QString& smartUpdateKey() const { return m_smartUpdateKey; }

    /// Gives missing names their defaults and removes what stood under the names. Throws Error for an unknown
    /// format.
    void prepareOutputFiles();

    /// Write one sheet and its data file. What fails leaves no file; throws Error.
    void writeTexture(const PackedTexture& texture);
    void writeData(const PackedTexture& texture);

    /// Rotation direction of the data format. Throws Error 36 for an unknown format.
    int rotationDirection() const;

signals:
    void error(const QString& message);
    void warning(const QString& message);
    void activity(int level, const QString& message);

private:
    QString tokenFor(const QByteArray& sourcesText) const;
    DataExporter& exporter() const;
    void dropForgottenSprites();
    PackedResult layout(const PackerJob* job, int baseFactor);
    PackedResult searchSize(const PackerJob* job);

    Settings* m_settings = nullptr;
    PackedResult m_lastResult;
    AttemptCache m_attempts;
    GFileNameList m_lastFileList;
    QStringList m_lastIgnoreList;
    QStringList m_lastReplaceList;
    SpriteFileTreeModel m_tree;
    QHash<const SpriteTreeNode*, Sprite> m_spriteCache;
    QList<Sprite> m_sprites;     ///< all sprites of the job, by name
    QList<Sprite> m_packSprites; ///< those that are packed: without aliases
    LayoutInputs m_layoutInputs; ///< of the last layout
    QString m_smartUpdateKey;
};
