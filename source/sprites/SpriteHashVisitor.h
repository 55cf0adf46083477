#pragma once

#include "FileData.h"
#include "FileState.h"
#include "SideBySide.h"
#include "SpriteTreeNode.h"
#include "SpriteTreeVisitor.h"

#include <QByteArrayList>

#include <algorithm>
#include <vector>

/// One line a sprite, in tree order: what its file was at the last load, or is on disk now.
class SpriteHashVisitor : public SpriteTreeVisitor {
public:
    void visitNode(SpriteTreeNode& node) override { m_files.push_back(&node.fileData()); }

    QByteArray storedText() const {
        return joined([](QByteArray& text, const FileData& file) { text += file.hashText(); });
    }

    QByteArray currentText() const {
        return joined([](QByteArray& text, const FileData& file) {
            appendFileState(text, file.path(), fileState(file.path()));
        });
    }

private:
    /// In runs of files, which lie in the same folders mostly, so that the cores don't meet.
    template <typename AppendLine>
    QByteArray joined(const AppendLine& appendLine) const {
        constexpr std::size_t run = 128;
        std::vector<QByteArray> texts((m_files.size() + run - 1) / run);
        sideBySide(texts.size(), [this, &texts, &appendLine](std::size_t number) {
            QByteArray& text = texts[number];
            const std::size_t end = std::min((number + 1) * run, m_files.size());
            for (std::size_t i = number * run; i < end; ++i) {
                appendLine(text, *m_files[i]);
                text += '\n';
            }
        });
        return QByteArrayList(texts.cbegin(), texts.cend()).join();
    }

    std::vector<const FileData*> m_files;
};
