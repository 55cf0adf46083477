#pragma once

#include "DataExporterInfo.h"
#include "PackedTexture.h"

class Settings;

/// Writes the file that tells a game framework where each sprite lies on the sheet. One object a format,
/// which lives as long as the process; what belongs to a job is overwritten for each. Jobs run one after the
/// other, so write() isn't made for two threads at once; the identity may be read from any.
class DataExporter {
public:
    virtual ~DataExporter();

    /// Writes fileName(). Throws Error (DataFile), a full disk included; no half-written file stays then.
    virtual void write() const = 0;

    virtual QString defaultFileName() const { return m_info.defaultFileName; }

    /// Trimming suits the format: the default of a run on the command line, which doesn't bind a project.
    virtual bool canTrim() const { return m_info.supportsTrimming; }

    virtual bool isTemplateBased() const { return false; }

    /// Changes whenever the format may come out in another way; an input of the smart update token.
    virtual QString versionString() const;

    /// The name under which the readers of the data file look a sprite up.
    virtual QString nameInFile(const PackedSprite& sprite) const;

    const DataExporterInfo& info() const { return m_info; }
    const QString& id() const { return m_info.id; }
    const QStringList& aliases() const { return m_info.aliases; }
    const QString& displayName() const { return m_info.displayName; }
    const QString& description() const { return m_info.description; }
    const QString& fileFilter() const { return m_info.fileFilter; }
    const QString& fileExtension() const { return m_info.fileExtension; }
    bool supportsTrimming() const { return m_info.supportsTrimming; }
    bool supportsRotation() const { return m_info.supportsRotation; }
    bool supportsNPOT() const { return m_info.supportsNPOT; }
    int rotationDirection() const { return m_info.rotationDirection; }
    bool showsLibGdxFiltering() const { return m_info.showsLibGdxFiltering; }
    bool showsAndEngineOptions() const { return m_info.showsAndEngineOptions; }
    bool showsTexturePath() const { return m_info.showsTexturePath; }
    bool showsTrimNames() const { return m_info.showsTrimNames; }

    /// The target file; defaultFileName() if none was set.
    QString fileName() const;
    void setFileName(const QString& fileName) { m_fileName = fileName; }

    /// What the next write() describes. `settings` is not owned and has to stay until then.
    void setInput(Settings* settings, const PackedTexture& texture);
    Settings* settings() const { return m_settings; }
    const PackedTexture& texture() const { return m_texture; }

    /// The whole token, by which a later run finds the file current.
    void setSmartUpdateKey(const QString& key) { m_smartUpdateKey = key; }
    const QString& smartUpdateKey() const { return m_smartUpdateKey; }

    /// The texture's file name without its folder.
    QString textureName() const;

    /// The texture as the data file refers to it: textureName() behind the project's sub path.
    QString textureFilePath() const;

    /// All that the data file lists: sprites and aliases, ascending by full name, by code unit.
    QList<PackedSprite> sortedSprites() const;

    /// One sentence for each name that more than one sprite has in the data file, with the full names of all
    /// of them. Needs the input of the next write().
    QStringList duplicateNames() const;

protected:
    explicit DataExporter(const DataExporterInfo& info);
    DataExporter(const DataExporter&) = delete;
    DataExporter& operator=(const DataExporter&) = delete;

private:
    DataExporterInfo m_info;
    QString m_fileName;
    Settings* m_settings = nullptr;
    PackedTexture m_texture;
    QString m_smartUpdateKey;
};
