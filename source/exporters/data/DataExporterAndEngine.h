#pragma once

#include "DataExporter.h"

class QTextStream;
class XmlDataFile;

/// Two files for AndEngine: an XML description of the sheet, and a java interface with a constant for each
/// sprite, whose value is the sprite's id in the XML. The java file's path and the options of the texture
/// are those of the project's AndEngine settings.
class DataExporterAndEngine : public DataExporter {
public:
    explicit DataExporterAndEngine(const DataExporterInfo& info);

    /// Both files, or none. Throws Error: DataFile as ever, also for a pixel format that AndEngine hasn't,
    /// and for a java file that would overwrite the description or the texture; CommandLine if the settings
    /// name no java file.
    void write() const override;

    /// The file tells trimming, but a run on the command line starts without it.
    bool canTrim() const override { return false; }

    /// The java constant without its "_ID", as game code has nothing else. XML alone has the full name too.
    QString nameInFile(const PackedSprite& sprite) const override;

private:
    void checkJavaFileName(const QString& javaFileName) const;
    void writeAtlas(XmlDataFile& file, const QString& pixelFormat) const;
    void writeOptions(XmlDataFile& file) const;
    void writeConstants(QTextStream& stream, const QString& javaFileName) const;
    QString containerWord() const;
    QString pixelFormatWord() const;
};
