#pragma once

#include "Patterns.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

struct FolderListing;
class Settings;
class SpriteBranchNode;
class SpriteTreeNode;

/// One walk over the file system: enters the files and folders of a project into a tree whose nodes are all
/// unseen, and marks what it meets as seen.
class SourceScan {
public:
    using Activity = std::function<void(int level, const QString& message)>;

    /// `activity` may be empty.
    SourceScan(const Settings& settings, const Activity& activity);

    /// Enters one entry of the file list: a folder with all that is in it, or a file of any kind. Null if the
    /// file is ignored. Throws Error 36 for a rule that can't be read, and for a movie in a program that
    /// can't play it.
    SpriteTreeNode* addEntry(const QString& path, SpriteBranchNode& root);

private:
    SpriteTreeNode* addFolder(const QString& path, const FolderListing& listing, const QString& prefix,
                              SpriteBranchNode& parent);
    SpriteTreeNode* addFile(const QString& path, const QString& displayName, const QString& prefix,
                            SpriteBranchNode& parent);
    template <typename... Names>
    void report(const QString& text, const Names&... names) const;
    bool isIgnored(const QString& path) const;
    QString renamed(const QString& name);
    const std::vector<ReplaceRule>& replaceRules();

    const Activity m_activity;
    std::vector<WildcardPattern> m_ignored;
    const QStringList m_ruleTexts;
    std::optional<std::vector<ReplaceRule>> m_rules;
    const QSet<QString> m_suffixes; ///< of files that can be read, in lower case
};
