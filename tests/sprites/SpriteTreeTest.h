#pragma once

#include "Error.h"
#include "Settings.h"
#include "SpriteFileTreeModel.h"
#include "SpriteImageNode.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

inline QString operator""_q(const char* text, size_t size) { return QString::fromUtf8(text, int(size)); }

/// A source tree over files of a temporary folder.
class SpriteTreeTest : public testing::Test {
protected:
    SpriteTreeTest() {
        QObject::connect(&model, &SpriteFileTreeModel::activity, [this](int level, const QString& message) {
            EXPECT_EQ(level, 2);
            log += message + QLatin1Char('\n');
        });
        QObject::connect(&model, &SpriteFileTreeModel::loadingDone, [this] { ++doneCount; });
    }

    QString path(const QString& name) const { return folder.filePath(name); }

    // A file of that name with a picture of that colour.
    QString file(const QString& name, QRgb color = 0xff112233) {
        QDir(folder.path()).mkpath(QFileInfo(path(name)).path());
        QImage image(3, 2, QImage::Format_ARGB32);
        image.fill(color);
        EXPECT_TRUE(image.save(path(name), "png"));
        return path(name);
    }

    void update(const QStringList& entries) {
        GFileNameList list;
        for (const QString& entry : entries)
            list.append(entry);
        settings.setFileList(list);
        model.update(&settings);
    }

    void load() {
        const int before = doneCount;
        model.loadSprites();
        EXPECT_EQ(doneCount, before) << "the report comes from the event loop";
        QCoreApplication::processEvents();
        EXPECT_EQ(doneCount, before + 1);
    }

    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const SpriteImageNode* sprite : model.sprites())
            all.push_back(sprite->spriteName().toStdString());
        return all;
    }

    SpriteImageNode* sprite(const QString& name) const {
        for (SpriteImageNode* node : model.sprites())
            if (node->spriteName() == name)
                return node;
        return nullptr;
    }

    QString errors() const {
        QString all;
        for (const SpriteImageNode* node : model.sprites())
            all += QString::number(int(node->errorClass())) + node->errorText();
        return all;
    }

    int updateError(const QStringList& entries, QString* message) {
        try {
            update(entries);
        } catch (const Error& error) {
            *message = error.message();
            EXPECT_TRUE(model.tryLock()) << "an error leaves the lock free";
            model.unlock();
            return error.code();
        }
        return 0;
    }

    QTemporaryDir folder;
    Settings settings;
    SpriteFileTreeModel model;
    QString log;
    int doneCount = 0;
};
