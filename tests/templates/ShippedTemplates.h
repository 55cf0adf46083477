#pragma once

#include "DataExporterGeneric.h"
#include "exporters/DataSheet.h"
#include "exporters/OutsideReader.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

inline QString u(const char* text) { return QString::fromUtf8(text); }

/// Names that some target takes for more than a name, and frames whose order by name isn't that of their
/// numbers.
inline const char* const awkwardNames[] = {"]]--/*\n</key>.png",   "#{$x}@{x}{{y}}{%z%}.png",
                                           "ui/a:b 'c'&<d>\t.png", "b/run_1.png",
                                           "b/run_10.png",         "b/run_2.png"};

/// The sheet of dataSheet() and a row of single pixels with awkward names. The sprite that lies turned is
/// trimmed too, and lies upright for formats that don't turn.
inline PackedTexture demandingSheet(bool turns) {
    PackedTexture texture = dataSheet();
    PackedSprite turned = texture.sprites().last();
    turned.setRotated(turns);
    turned.setTrimmed(true);
    turned.setCornerOffset({3, 1});
    turned.setUntrimmedSize({24, 15});
    int x = 0;
    for (const char* name : awkwardNames) {
        PackedSprite sprite(u(name), 10 + x);
        sprite.setPosition({x++, 0});
        sprite.setSize({1, 1});
        sprite.setUntrimmedSize({1, 1});
        sprite.setTextureSize(texture.size());
        texture.add(sprite);
    }
    return texture;
}

inline QJsonArray list(QSize size) { return {size.width(), size.height()}; }
inline QJsonArray list(QPoint point) { return {point.x(), point.y()}; }
inline QJsonArray list(const QRect& rect) { return {rect.x(), rect.y(), rect.width(), rect.height()}; }

inline std::string textOf(const QJsonObject& object) { return QJsonDocument(object).toJson().toStdString(); }

/// Writes the sheet in one of the formats beside the program, for a reader outside.
class ShippedTemplate : public testing::Test {
protected:
    ShippedTemplate() {
        settings.setTextureFileName(u("/some/where/it's a sheet@2x.png"));
        settings.setTextureSubPath(u("img/\"x\"&y"));
        qputenv("NODE_PATH", SORVANE_READERS);
    }

    QByteArray rendered(const char* format) {
        DataExporterGeneric exporter(u(SORVANE_TEMPLATES "/") + u(format));
        texture = demandingSheet(exporter.supportsRotation());
        exporter.setInput(&settings, texture);
        exporter.setFileName(folder.filePath(u("sheet.") + exporter.fileExtension()));
        exporter.setSmartUpdateKey(token);
        exporter.write();
        QFile file(exporter.fileName());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        const QByteArray text = file.readAll();
        EXPECT_TRUE(text.contains(token.toUtf8()));
        EXPECT_TRUE(text.endsWith('\n') && !text.endsWith("\n\n")) << format;
        return text;
    }

    /// What a driver of ours in the folder readers prints for a text.
    static QByteArray read(const char* driver, const QByteArray& text, const QStringList& arguments = {}) {
        const QString script = u(SORVANE_DRIVERS "/") + u(driver);
        if (script.endsWith(u(".lua")))
            return readOutside("lua5.4", {script}, text);
        if (script.endsWith(u(".py")))
            return readOutside("python3", {script}, text);
        if (!QDir(u(SORVANE_READERS)).exists()) {
            ADD_FAILURE() << "The packages that read the formats are missing: run scripts/npm_readers";
            return {};
        }
        return readOutside("node", QStringList(script) + arguments, text);
    }

    QJsonObject understood(const char* driver, const QByteArray& text) {
        return QJsonDocument::fromJson(read(driver, text)).object();
    }

    /// An object with one entry a sprite and alias, by the name in the file.
    template <class Fields>
    QJsonObject eachSprite(Fields fields) {
        QJsonObject object;
        for (const PackedSprite& sprite : texture.allSprites())
            object.insert(nameOf(sprite), fields(sprite));
        return object;
    }

    QString nameOf(const PackedSprite& sprite) const {
        return settings.trimSpriteNames() ? sprite.trimmedName() : sprite.fullName();
    }

    QJsonArray runNames() const {
        const QString suffix = settings.trimSpriteNames() ? QString() : u(".png");
        return {u("b/run_1") + suffix, u("b/run_2") + suffix, u("b/run_10") + suffix};
    }

    const QString token = u("$Sorvane:SmartUpdate:0123456789abcdef$");
    const QString image = u("img/\"x\"&y/it's a sheet@2x.png");
    QTemporaryDir folder;
    Settings settings;
    PackedTexture texture;
};

/// With both kinds of names: whole, and without the suffix of images.
class NamedTemplate : public ShippedTemplate, public testing::WithParamInterface<bool> {
protected:
    NamedTemplate() { settings.setTrimSpriteNames(GetParam()); }
};
