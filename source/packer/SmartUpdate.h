#pragma once

#include <QString>

class Settings;

/// What decides whether a sheet's two files are current.
namespace SmartUpdate {

/// The token of a publish: changes with the settings, the program, the sources and the exporter.
/// `sourcesText` has one line a source file in UTF-8, `exporterVersion` is the exporter's versionString().
QString token(const Settings& settings, const QByteArray& sourcesText, const QString& exporterVersion);

/// Both files exist and the data file holds the token. False if a file can't be read.
bool isCurrent(const QString& dataFile, const QString& textureFile, const QString& token);

/// Notes, in the user's cache folder, that the publish with this token ended without a warning; forgotten by
/// forget(). Only speed depends on the note: where it can't be written the next run takes the long way.
void remember(const QString& dataFile, const QString& token);
void forget(const QString& dataFile);

/// The note for this data file holds the token.
bool remembers(const QString& dataFile, const QString& token);

} // namespace SmartUpdate
