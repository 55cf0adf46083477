#include "ConsoleLog.h"

#include <cstdio>

ConsoleLog::ConsoleLog() : m_out(stdout), m_err(stderr) {
    m_out.setCodec("UTF-8");
    m_err.setCodec("UTF-8");
}

ConsoleLog& ConsoleLog::instance() {
    static ConsoleLog log;
    return log;
}

void ConsoleLog::activity(int level, const QString& text) {
    if (level > m_verbosity)
        return;
    m_out << text << '\n';
    m_out.flush();
}

void ConsoleLog::warning(const QString& text) {
    if (m_verbosity >= 0)
        writeLines(QStringLiteral("Sorvane:: warning: "), text);
}

void ConsoleLog::error(const QString& text) { writeLines(QStringLiteral("Sorvane:: error: "), text); }

void ConsoleLog::print(const QString& text) {
    m_out << text;
    m_out.flush();
}

void ConsoleLog::writeLines(const QString& prefix, const QString& text) {
    for (const QString& line : text.split(QLatin1Char('\n')))
        m_err << prefix << line << '\n';
    m_err.flush();
}
