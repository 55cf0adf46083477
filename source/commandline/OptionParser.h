#pragma once

#include "Option.h"

/// Applies the arguments of a command line run to the context's settings; what is left over goes into the
/// file list. Throws Error for what is wrong (what was set before stays set) and EndOfRun for --help and
/// --version. Prints the help text on standard output if an argument is unknown.
void parseOptions(OptionContext& context, QStringList arguments);

/// The option that a mistyped one was probably meant to be; empty if none is near.
QString nearestOption(const QString& mistyped);
