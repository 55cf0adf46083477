#pragma once

#include <QString>

/// Thrown by an option that ends the run with status 0 once its text is on standard output.
struct EndOfRun {
    QString output;
};
