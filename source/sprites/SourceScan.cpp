#include "SourceScan.h"

#include "Error.h"
#include "FolderListing.h"
#include "ImageLoader.h"
#include "Settings.h"
#include "SpriteFileNode.h"
#include "SpriteFlashNode.h"
#include "SpriteFolderNode.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>
#include <memory>

namespace {

const QString& movieSuffix() {
    static const QString suffix = QStringLiteral("swf");
    return suffix;
}

bool isMovie(const QString& fileName) {
    return fileName.toLower().endsWith(QLatin1Char('.') + movieSuffix());
}

QSet<QString> readableSuffixes() {
    const QStringList formats = QtUniversalImageLoader::ImageLoader::instance()->readableFormats().keys();
    QSet<QString> suffixes(formats.begin(), formats.end());
    suffixes.insert(movieSuffix());
    return suffixes;
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
    if (info.isDir())
        return addFolder(path, *listFolder(path, m_suffixes), QString(), root);
    return addFile(info.absoluteFilePath(), info.fileName(), QString(), root);
}

SpriteTreeNode* SourceScan::addFolder(const QString& path, const FolderListing& listing,
                                      const QString& prefix, SpriteBranchNode& parent) {
    SpriteFolderNode* folder = parent.folder(listing.name);
    if (!folder || standsForAnother(*folder, path)) {
        const bool takesPlace = folder != nullptr;
        auto node = std::make_unique<SpriteFolderNode>(prefix + QLatin1Char('/') + listing.name, listing.name,
                                                       path, listing.outer != nullptr);
        folder = node.get();
        parent.append(std::move(node), takesPlace);
    }
    folder->setSeen(true);
    for (const QString& file : listing.files)
        addFile(listing.pathOf(file), file, prefix, *folder);
    for (const FolderListing& inner : listing.subfolders)
        addFolder(inner.absolutePath, inner,
                  prefix + inner.name.section(QLatin1Char('.'), 0, 0) + QLatin1Char('/'), *folder);
    return folder;
}

SpriteTreeNode* SourceScan::addFile(const QString& path, const QString& displayName, const QString& prefix,
                                    SpriteBranchNode& parent) {
    const QString ownName = prefix + displayName;
    if (isIgnored(path)) {
        report(QStringLiteral("Ignoring file due to --ignore-files: %1"), path);
        return nullptr;
    }
    const QString name = renamed(ownName);
    if (name != ownName)
        report(QStringLiteral("Renamed %1 => %2"), ownName, name);

    SpriteTreeNode* node = parent.child(displayName);
    if (!node || standsForAnother(*node, path)) {
        report(QStringLiteral("Adding: %1"), path);
        const bool takesPlace = node != nullptr;
        std::unique_ptr<SpriteTreeNode> added;
        if (!isMovie(displayName))
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

template <typename... Names>
void SourceScan::report(const QString& text, const Names&... names) const {
    if (m_activity)
        m_activity(2, text.arg(names...));
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
