#pragma once

#include <QTextStream>

/// What a batch run writes on the console. One for the process, used from the main thread only.
class ConsoleLog {
public:
    static ConsoleLog& instance();

    /// Highest level of activity that is shown: 1 at first, 2 shows inner steps, -1 nothing.
    void setVerbosity(int verbosity) { m_verbosity = verbosity; }
    int verbosity() const { return m_verbosity; }

    /// Writes the text as a line of standard output, if its level is shown.
    void activity(int level, const QString& text);

    /// Writes each line of the text to standard error, marked as a warning; nothing with a verbosity below 0.
    void warning(const QString& text);

    /// The same, marked as an error, always.
    void error(const QString& text);

    /// Writes a text to standard output as it is.
    void print(const QString& text);

private:
    ConsoleLog();
    void writeLines(const QString& prefix, const QString& text);

    QTextStream m_out;
    QTextStream m_err;
    int m_verbosity = 1;
};
