#pragma once

#include <QByteArray>
#include <QString>

#include <memory>

class Settings;

/// The settings of a project file that the program's first generation wrote: a header and one hash of values
/// in the toolkit's stream format. Nothing writes it any more; the next save gives the file in XML form.
///
/// Throws Error 22 for a file that can't be read, isn't of this format or comes from another version, 20 for
/// suffixes of output files, 16 to 19 and 55 for words that name nothing. Values that are cut off or damaged
/// are all taken as their defaults.
std::unique_ptr<Settings> readLegacyProject(const QString& fileName);

/// The same from the bytes of the file; the name gives the folder that paths are relative to.
std::unique_ptr<Settings> parseLegacyProject(const QByteArray& bytes, const QString& fileName);
