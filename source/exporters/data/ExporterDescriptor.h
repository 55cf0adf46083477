#pragma once

#include "DataExporterInfo.h"

#include <QList>

/// What the file exporter.xml in a folder of templates says.
struct ExporterDescriptor {
    /// One output file.
    struct FileEntry {
        QString name;
        QString displayName;
        QString fileExtension; ///< without the dot
        QString templateName;  ///< relative to the folder
    };

    DataExporterInfo info; ///< file fields are those of the last entry of `files`
    QString version;       ///< of the exporter; nothing compares it
    QList<FileEntry> files;
};

/// Reads the descriptor of a folder. Throws Error: Descriptor for a file that can't be read or isn't well
/// formed, Flash (40) for another version of the descriptor's form, DescriptorContent for what is missing or
/// illegal in it.
ExporterDescriptor readExporterDescriptor(const QString& directory);
