#include "FolderListing.h"

#include "SideBySide.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <utility>

#include <dirent.h>
#include <sys/stat.h>

namespace {

QString joined(const QString& folder, const QString& entry) {
    return folder.endsWith(QLatin1Char('/')) ? folder + entry : folder + QLatin1Char('/') + entry;
}

bool hasSuffix(const QString& name, const QSet<QString>& suffixes) {
    // A suffix may have dots of its own.
    for (int dot = name.indexOf(QLatin1Char('.')); dot >= 0; dot = name.indexOf(QLatin1Char('.'), dot + 1))
        if (suffixes.contains(name.mid(dot + 1).toLower()))
            return true;
    return false;
}

// By name, ignoring case. Names that differ in case alone go by their letters: the toolkit leaves them as the
// file system happens to list them, and equal input has to give equal output.
template <typename Entries, typename Name>
void sortByName(Entries& entries, const Name& nameOf) {
    using Entry = typename Entries::value_type;
    std::vector<std::pair<std::pair<QString, QString>, Entry>> keyed;
    keyed.reserve(static_cast<std::size_t>(entries.size()));
    for (Entry& entry : entries)
        keyed.emplace_back(std::pair(nameOf(entry).toLower(), nameOf(entry)), std::move(entry));
    std::sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::transform(keyed.begin(), keyed.end(), entries.begin(),
                   [](auto& pair) { return std::move(pair.second); });
}

bool leadsBack(const FolderListing& folder) {
    for (const FolderListing* outer = folder.outer; outer; outer = outer->outer)
        if (outer->canonicalPath == folder.canonicalPath)
            return true;
    return false;
}

/// Kind of an entry in the form of `d_type`, links followed.
unsigned char kindOf(DIR* dir, const dirent& entry) {
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN)
        return entry.d_type;
    struct stat target {};
    if (fstatat(dirfd(dir), entry.d_name, &target, 0) != 0)
        return DT_UNKNOWN;
    return static_cast<unsigned char>(IFTODT(target.st_mode));
}

FolderListing subfolder(const FolderListing& outer, const QString& name, bool certainlyNoLink) {
    FolderListing folder;
    folder.name = name;
    folder.absolutePath = outer.pathOf(name);
    folder.canonicalPath = certainlyNoLink ? joined(outer.canonicalPath, name)
                                           : QFileInfo(folder.absolutePath).canonicalFilePath();
    folder.outer = &outer;
    return folder;
}

// By the C library: the toolkit's iterator asks it for the same, and takes twice the time.
void listOne(const QString& path, FolderListing& folder, const QSet<QString>& suffixes) {
    DIR* dir = opendir(QFile::encodeName(path).constData());
    if (!dir)
        return;
    const auto close = qScopeGuard([dir] { closedir(dir); });
    while (const dirent* entry = readdir(dir)) {
        if (entry->d_name[0] == '.')
            continue;
        // A name that can't be decoded would lead to no file.
        const QString name = QFile::decodeName(entry->d_name);
        if (QFile::encodeName(name) != entry->d_name)
            continue;
        const unsigned char kind = kindOf(dir, *entry);
        if (kind == DT_DIR) {
            FolderListing inner = subfolder(folder, name, entry->d_type == DT_DIR);
            if (!leadsBack(inner))
                folder.subfolders.push_back(std::move(inner));
        } else if (kind == DT_REG && hasSuffix(name, suffixes)) {
            folder.files.append(name);
        }
    }
    sortByName(folder.files, [](const QString& file) { return file; });
    sortByName(folder.subfolders, [](const FolderListing& inner) { return inner.name; });
}

} // namespace

QString FolderListing::pathOf(const QString& entry) const { return joined(absolutePath, entry); }

std::unique_ptr<const FolderListing> listFolder(const QString& folder, const QSet<QString>& suffixes) {
    auto first = std::make_unique<FolderListing>();
    const QDir dir(folder);
    first->name = dir.dirName();
    first->absolutePath = dir.absolutePath();
    first->canonicalPath = dir.canonicalPath();
    // One depth after the other, the folders of each side by side.
    std::vector<FolderListing*> level = {first.get()};
    while (!level.empty()) {
        sideBySide(level.size(), [&folder, &level, &suffixes](std::size_t i) {
            // Behind a link ".." is another folder than in the text of a path.
            listOne(level[i]->outer ? level[i]->absolutePath : folder, *level[i], suffixes);
        });
        std::vector<FolderListing*> next;
        for (FolderListing* outer : level)
            for (FolderListing& inner : outer->subfolders)
                next.push_back(&inner);
        level = std::move(next);
    }
    return first;
}
