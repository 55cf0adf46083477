#pragma once

#include "SpriteTreeNode.h"
#include "SpriteTreeVisitor.h"

/// One line a sprite, in tree order: what its file was at the last load, or is on disk now.
class SpriteHashVisitor : public SpriteTreeVisitor {
public:
    enum class Source { Stored, OnDisk };

    explicit SpriteHashVisitor(Source source) : m_source(source) {}

    void visitNode(SpriteTreeNode& node) override {
        const FileData& file = node.fileData();
        m_text += m_source == Source::Stored ? file.hashText() : file.currentHashText();
        m_text += QLatin1Char('\n');
    }

    const QString& text() const { return m_text; }

private:
    const Source m_source;
    QString m_text;
};
