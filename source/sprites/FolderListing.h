#pragma once

#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

/// A folder as a scan sees it, with all that lies inside. What is hidden is left out.
struct FolderListing {
    QString name;
    QString absolutePath;
    QString canonicalPath;                 ///< the same with all links followed
    const FolderListing* outer = nullptr;  ///< the folder that it lies in; null for the first one
    QStringList files;                     ///< names of those that can be read, by name, ignoring case
    std::vector<FolderListing> subfolders; ///< in the same order

    /// Path of one of the files or subfolders.
    QString pathOf(const QString& entry) const;
};

/// Lists a folder, links to folders followed, but for a link back to where the walk comes from: that would be
/// followed as often as the file system lets it. `suffixes` has those of files that can be read, in lower
/// case. A folder that can't be listed is empty.
std::unique_ptr<const FolderListing> listFolder(const QString& folder, const QSet<QString>& suffixes);
