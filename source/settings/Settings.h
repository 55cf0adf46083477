#pragma once

#include "AlgorithmBasicSettings.h"
#include "AlgorithmMaxRectsSettings.h"
#include "AlgorithmSettings.h"
#include "AndEngine.h"
#include "AutoSDSettings.h"
#include "LibGDX.h"
#include "SettingsBase.h"
#include "SpriteSettings.h"

#include <memory>

class QIODevice;

/// All settings of one project or one job. Confined to the thread that owns it; a job works on its own
/// clone().
class Settings : public SettingsBase {
    Q_OBJECT

public:
    explicit Settings(QObject* parent = nullptr);

    /// A new object, owned by the caller, from a project file; an empty file gives createDefault(). Throws
    /// Error 22 for a file that can't be read, 39 and 55 for what is wrong in it.
    static Settings* load(const QString& fileName);

    /// A new object, owned by the caller, with the defaults that the user stored, or those of the program.
    static Settings* createDefault();

    /// Writes the project file in place and takes its name. Throws Error 21 and leaves object and old file as
    /// they were.
    void save(const QString& fileName);

    /// Stores the object as the user's defaults.
    void saveAsDefault() const;

    /// The object as a bare `struct` element, paths relative to the project file's folder, or to the current
    /// folder without one. Equal settings give equal text.
    QString toXml() const;

    Settings* clone() const override;

    /// The file that the object was loaded from or saved to; empty for a new object.
    const QString& fileName() const { return m_fileName; }

    /// Takes the data format and its limits: rotation goes off, and trimming that keeps the size becomes
    /// none, where the format can't express them. Throws Error 19 for an unknown format.
    void setDataFormatChecked(const QString& name);

    /// Appends what isn't in the file list yet, as absolute paths.
    void addFiles(const QStringList& files);

    /// Appends one entry as it is, unless it is in the file list.
    void addFile(const QString& file);

    /// Removes every occurrence of each entry from the file list.
    void removeFiles(const QStringList& files);

    /// The smallest factor from 1 to 64 of which every divisor of the project gives whole sizes, -1 if there
    /// is none.
    int commonBaseFactor() const;

    /// Smallest scale of the main sheet and the variants, all scales multiplied out.
    float smallestScale() const;

    /// commonBaseFactor() at the smallest scale, rounded; the step for sizes that must stay common.
    int commonBaseSize() const;

    /// Asks for talk on the console. The stored property of the same name stays as it is.
    void setVerbose(bool verbose) override;
    bool verboseRequested() const { return m_verboseRequested; }

private:
    static std::unique_ptr<Settings> parse(QIODevice& device, const QString& folder);
    void clearFolderNames(const QString& folder);
    void migrate();

    QString m_fileName;
    bool m_verboseRequested = false;
};
