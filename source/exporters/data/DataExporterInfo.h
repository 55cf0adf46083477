#pragma once

#include <QString>
#include <QStringList>

/// Identity and capabilities of a data format: one row of the registry's table, or what a descriptor of a
/// template format says. Everybody asks these fields; nobody asks for a format by its name.
struct DataExporterInfo {
    QString id; ///< key in projects and on the command line; case counts
    QString displayName;
    QString description;
    QString fileFilter;    ///< for a file dialog
    QString fileExtension; ///< without the dot
    QString defaultFileName;
    QStringList aliases{};             ///< further ids, in any case
    bool supportsTrimming = true;      ///< tells the size before trimming
    bool supportsRotation = true;      ///< tells whether a sprite lies rotated
    bool supportsNPOT = false;         ///< its readers take sheets of any size
    int rotationDirection = 0;         ///< a PackedSprite::RotationDirection
    bool showsLibGdxFiltering = false; ///< these say which editors of the settings panel apply
    bool showsAndEngineOptions = false;
    bool showsTexturePath = true;
    bool showsTrimNames = false;
};
