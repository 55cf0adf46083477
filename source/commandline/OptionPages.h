#pragma once

#include <QString>

// What else is made from the table of options, for builds and the documentation.

/// The manual page, section 1, as roff with the macros of man(7).
QString manualPage();

/// Bash's completion of options, their words and file names.
QString bashCompletion();

/// The page of the documentation, in Markdown.
QString optionsPage();
