#pragma once

#include <QString>

/// The help text, made from the table of options, with a line end at its end.
QString helpText();

/// The text of --version, with a line end.
QString versionText();
