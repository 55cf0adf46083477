#include "PngLog.h"

#include <QDebug>
#include <QString>

#include <cstdarg>

PngLog::~PngLog() {
    if (!m_line.isEmpty())
        print("\n");
}

void PngLog::print(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    m_line += QString::vasprintf(format, arguments).toUtf8();
    va_end(arguments);
    for (int end = m_line.indexOf('\n'); end >= 0; end = m_line.indexOf('\n')) {
        qDebug("%s", m_line.left(end).constData());
        m_line.remove(0, end + 1);
    }
}
