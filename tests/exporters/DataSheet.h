#pragma once

#include "DataExporterRegistry.h"
#include "Settings.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A sheet of 128 x 64 with one sprite of each kind, for tests of the data formats:
/// - "b/hero.png", 32 x 32, whole;
/// - "a\"b\\c.png", 7 x 7 kept of 10 x 10 at (1, 2), extruded by 1;
/// - "Turn.png", 20 x 10, lying turned;
/// - "Zwölf.png", an alias of the hero with another offset, trimmed.
inline PackedTexture dataSheet() {
    const auto sprite = [](const char* name, int id, QPoint position, QSize size, QSize untrimmed) {
        PackedSprite packed(QString::fromUtf8(name), id);
        packed.setPosition(position);
        packed.setSize(size);
        packed.setUntrimmedSize(untrimmed);
        packed.setTextureSize({128, 64});
        return packed;
    };
    PackedSprite hero = sprite("b/hero.png", 1, {2, 3}, {32, 32}, {32, 32});
    PackedSprite trimmed = sprite("a\"b\\c.png", 2, {40, 3}, {9, 9}, {10, 10});
    trimmed.setInset(1);
    trimmed.setCornerOffset({1, 2});
    trimmed.setTrimmed(true);
    PackedSprite turned = sprite("Turn.png", 3, {60, 3}, {20, 10}, {20, 10});
    turned.setRotated(true);
    PackedSprite alias = sprite("Zw\xc3\xb6lf.png", 4, {2, 3}, {32, 32}, {40, 33});
    alias.setCornerOffset({0, 1});
    alias.setTrimmed(true);
    hero.addAlias(alias);
    PackedTexture texture(2, 2);
    texture.setSize({128, 64});
    texture.add(hero);
    texture.add(trimmed);
    texture.add(turned);
    return texture;
}

/// A sheet of single pixels in a row, one a name.
inline PackedTexture sheetOf(const QStringList& names) {
    PackedTexture texture(0, 0);
    texture.setSize({64, 4});
    for (const QString& name : names) {
        const int count = texture.sprites().size();
        PackedSprite sprite(name, count);
        sprite.setPosition({count, 0});
        sprite.setSize({1, 1});
        sprite.setUntrimmedSize({1, 1});
        texture.add(sprite);
    }
    return texture;
}

/// Writes a sheet in a format and gives back what stands in the file.
inline QByteArray writtenData(const char* format, Settings& settings, const PackedTexture& texture,
                              const QString& token = QStringLiteral("$token$")) {
    QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("data"));
    DataExporter* exporter = DataExporterRegistry::instance().find(QLatin1String(format));
    if (!exporter) {
        ADD_FAILURE() << "no format " << format;
        return {};
    }
    exporter->setFileName(name);
    exporter->setInput(&settings, texture);
    exporter->setSmartUpdateKey(token);
    exporter->write();
    QFile file(name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

inline QByteArray writtenData(const char* format) {
    Settings settings;
    settings.setTextureFileName(QStringLiteral("/somewhere/sheet.png"));
    return writtenData(format, settings, dataSheet());
}
