#include "SourceScan.h"

#include "Error.h"
#include "ImageLoader.h"
#include "Settings.h"
#include "SpriteFileNode.h"
#include "SpriteFlashNode.h"
#include "SpriteFolderNode.h"

#include <QCoreApplication>
#include <QDir>

#include <algorithm>
#include <memory>
#include <utility>

namespace {

const QString& movieSuffix() {
    static const QString suffix = QStringLiteral("swf");
    return suffix;
}

QSet<QString> readableSuffixes() {
    const QStringList formats = QtUniversalImageLoader::ImageLoader::instance()->readableFormats().keys();
    QSet<QString> suffixes(formats.begin(), formats.end());
    suffixes.insert(movieSuffix());
    return suffixes;
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
void sortByName(QFileInfoList& entries) {
    std::vector<std::pair<QString, QString>> names;
    std::vector<int> order;
    for (int i = 0; i < entries.size(); ++i) {
        names.emplace_back(entries[i].fileName().toLower(), entries[i].fileName());
        order.push_back(i);
    }
    std::sort(order.begin(), order.end(),
              [&names](int a, int b) { return names[size_t(a)] < names[size_t(b)]; });
    QFileInfoList sorted;
    for (int i : order)
        sorted.append(entries[i]);
    entries = sorted;
}

struct FolderEntries {
    QFileInfoList files; ///< those that can be read
    QFileInfoList subfolders;
};

/// One listing, without name filters: the toolkit makes a regular expression of each for every folder.
FolderEntries entriesOf(const QString& folder, const QSet<QString>& suffixes) {
    FolderEntries entries;
    for (const QFileInfo& entry :
         QDir(folder).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted)) {
        if (entry.isDir())
            entries.subfolders.append(entry);
        else if (hasSuffix(entry.fileName(), suffixes))
            entries.files.append(entry);
    }
    sortByName(entries.files);
    sortByName(entries.subfolders);
    return entries;
}

// A node that an earlier scan left under the same name stands for another file or folder if its path is
// another one: several projects in one run may have folders of one name. Within one scan the first path wins.
bool standsForAnother(const SpriteTreeNode& node, const QString& path) {
    return !node.seen() && node.fileName() != path;
}

} // namespace

SourceScan::SourceScan(const Settings& settings, const Activity& activity)
    : m_activity(activity), m_ruleTexts(settings.replaceList()), m_suffixes(readableSuffixes()) {
    for (const QString& pattern : settings.ignoreFileList())
        m_ignored.emplace_back(pattern);
}

SpriteTreeNode* SourceScan::addEntry(const QString& path, SpriteBranchNode& root) {
    const QFileInfo info(path);
    return info.isDir() ? addFolder(path, QString(), root, false) : addFile(info, QString(), root);
}

SpriteTreeNode* SourceScan::addFolder(const QString& path, const QString& prefix, SpriteBranchNode& parent,
                                      bool nested) {
    const QDir dir(path);
    const QString name = dir.dirName();
    SpriteFolderNode* folder = parent.folder(name);
    if (!folder || standsForAnother(*folder, path)) {
        const bool takesPlace = folder != nullptr;
        auto node = std::make_unique<SpriteFolderNode>(prefix + QLatin1Char('/') + name, name, path, nested);
        folder = node.get();
        parent.append(std::move(node), takesPlace);
    }
    folder->setSeen(true);
    m_openFolders.append(dir.canonicalPath());
    const FolderEntries entries = entriesOf(path, m_suffixes);
    for (const QFileInfo& file : entries.files)
        addFile(file, prefix, *folder);
    addSubfolders(entries.subfolders, prefix, *folder);
    m_openFolders.removeLast();
    return folder;
}

void SourceScan::addSubfolders(const QFileInfoList& subfolders, const QString& prefix,
                               SpriteBranchNode& parent) {
    for (const QFileInfo& info : subfolders) {
        // A link back to where the walk comes from would be followed as often as the file system lets it.
        if (m_openFolders.contains(info.canonicalFilePath()))
            continue;
        addFolder(info.absoluteFilePath(), prefix + info.baseName() + QLatin1Char('/'), parent, true);
    }
}

SpriteTreeNode* SourceScan::addFile(const QFileInfo& file, const QString& prefix, SpriteBranchNode& parent) {
    const QString path = file.absoluteFilePath();
    const QString displayName = file.fileName();
    const QString ownName = prefix + displayName;
    if (isIgnored(path)) {
        m_activity(2, QStringLiteral("Ignoring file due to --ignore-files: %1").arg(path));
        return nullptr;
    }
    const QString name = renamed(ownName);
    if (name != ownName)
        m_activity(2, QStringLiteral("Renamed %1 => %2").arg(ownName, name));

    SpriteTreeNode* node = parent.child(displayName);
    if (!node || standsForAnother(*node, path)) {
        m_activity(2, QStringLiteral("Adding: %1").arg(path));
        const bool takesPlace = node != nullptr;
        std::unique_ptr<SpriteTreeNode> added;
        if (file.suffix().toLower() != movieSuffix())
            added = std::make_unique<SpriteFileNode>(name, displayName, FileData(path));
        else if (qApp && qApp->inherits("QApplication"))
            added = std::make_unique<SpriteFlashNode>(name, displayName, FileData(path));
        else
            throw Error(Error::CommandLine,
                        QStringLiteral("When using Flash importer from command line you must specify "
                                       "--enable-swf-import"));
        node = added.get();
        parent.append(std::move(added), takesPlace);
    }
    node->setSeen(true);
    return node;
}

bool SourceScan::isIgnored(const QString& path) const {
    return std::any_of(m_ignored.begin(), m_ignored.end(),
                       [&path](const WildcardPattern& pattern) { return pattern.matches(path); });
}

QString SourceScan::renamed(const QString& name) {
    QString result = name;
    for (const ReplaceRule& rule : replaceRules())
        result = rule.applied(result);
    return result;
}

// Read at the first file: rules without any file to rename do no harm.
const std::vector<ReplaceRule>& SourceScan::replaceRules() {
    if (!m_rules) {
        std::vector<ReplaceRule> rules;
        for (const QString& text : m_ruleTexts) {
            const QStringList sides = text.split(QLatin1Char('='));
            if (sides.size() != 2)
                throw Error(Error::CommandLine, QStringLiteral("Format for replacement: <regexp>=<string>"));
            rules.emplace_back(sides[0], sides[1]);
        }
        m_rules = std::move(rules);
    }
    return *m_rules;
}
